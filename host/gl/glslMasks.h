#pragma once

#include "host/gl/glslShader.h"

namespace VantrelSDK {

/// Writes, in grey, how far the surface faces a direction.
class glslNormalDotShader : public glslGenericProgram {
  public:
    /// Of length 1, in the camera's coordinates.
    void SetDir(const MVector& direction) { dir = direction; }

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    MVector dir{0, 0, 1};
};

/// Writes how far it does not.
class glslNormalDotShaderInv : public glslNormalDotShader {
  protected:
    std::string VertexSource() const override;
};

/// Writes the occlusion of a view's pixels, blurred.
class glslSaaoMaskShader : public glslGenericProgram {
  public:
    /// The texture unit of the occlusion; the port's size in pixels.
    void SetView(int unit, int width, int height) {
        texUnit = unit, viewWidth = width, viewHeight = height;
    }

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    int texUnit = 0, viewWidth = 512, viewHeight = 512;
};

}  // namespace VantrelSDK
