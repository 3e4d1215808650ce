#pragma once

#include <maya/M3dView.h>
#include <maya/MDrawRequest.h>
#include <maya/MMatrix.h>

#include <memory>
#include <vector>

#include "core/sculpt/LDynMask.h"
#include "host/gl/GLTargets.h"
#include "host/gl/MaskSettings.h"

namespace VantrelSDK {

class MLDisplayCache;
class glslGenericProgram;

/// Where masks are drawn, as large as a view.
class MLMaskFBO : public glslFBO {
  public:
    MLMaskFBO() : glslFBO(1, true) {}
    /// Of that size from now on. False where it can't be.
    bool Resize(int width, int height);
    bool MakeCurrent() override;
};

/// A mask drawn from the surface as the view shows it. It is drawn anew when the view has moved and
/// stands still again, or when it is told to; until then brushes go by the former picture.
class MLDynMask : public LDynMask {
  public:
    ~MLDynMask() override;

    bool IsRendered() const { return rendered_; }
    /// What there is is no longer good.
    void Dirty() { rendered_ = false; }
    /// Draws it at the next chance, wherever the view stands.
    void Forget() { projection_ = modelView_ = MMatrix(), rendered_ = false; }
    /// Brings it up to date with a view that draws: renders it, or in a window notes that the view
    /// has moved. Whether it can be shown.
    bool Follow(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                const MaskSettings& settings);
    /// A frame has noted that the view moved; the next one renders.
    bool IsPending() const { return putOff_; }
    /// Covers closed pixels with red.
    void Display();
    /// Looks positions of an object up as a view sees them now.
    void Aim(const M3dView& view, const MMatrix& objToWorld);

  protected:
    virtual float getBgColor() const = 0;
    /// The program that draws it, ready; null where it can't be.
    virtual glslGenericProgram* Shader(const MDrawRequest& request, M3dView& view,
                                       MLDisplayCache& cache, const MaskSettings& settings) = 0;

  private:
    void Render(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                const MaskSettings& settings);
    std::vector<unsigned char> ReadRed(int width, int height) const;
    void Upload();

    bool rendered_ = false, putOff_ = false;
    /// The picture as a texture; 0 before it is shown.
    unsigned texid = 0;
    bool uploaded_ = false;
    MMatrix projection_, modelView_;
    MaskSettings settings_;
};

/// Closes what faces the direction.
class NormalDotMask : public MLDynMask {
  public:
    const char* GetName() const override { return "Inverse Edge Mask"; }

  protected:
    float getBgColor() const override { return 0; }
    glslGenericProgram* Shader(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                               const MaskSettings& settings) override;
};

/// Closes what turns away from it.
class NormalDotMaskInverted : public MLDynMask {
  public:
    const char* GetName() const override { return "Edge Mask"; }

  protected:
    float getBgColor() const override { return 1; }
    glslGenericProgram* Shader(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                               const MaskSettings& settings) override;
};

/// Closes what lies open, by the occlusion.
class SSAOMask : public MLDynMask {
  public:
    const char* GetName() const override { return "SAAO mask"; }

  protected:
    float getBgColor() const override { return 0; }
    glslGenericProgram* Shader(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                               const MaskSettings& settings) override;
};

/// One of each, in the order of their numbers.
std::vector<std::unique_ptr<MLDynMask>> MakeMasks();

}  // namespace VantrelSDK
