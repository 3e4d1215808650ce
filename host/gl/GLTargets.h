#pragma once

#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

namespace VantrelSDK {

/// A texture that is drawn into. Between MakeCurrent and ResetCurrent drawing goes there, with
/// matrices and viewport of its own; afterwards all is as it was.
class glslFBO {
  public:
    virtual ~glslFBO() = default;

    /// Makes it, in a current context. What fails leaves it off.
    bool Init();
    void Destroy();
    bool IsInitOK() const { return initOK; }
    /// Texels a side, of those that are square.
    int size() const { return width; }
    virtual bool MakeCurrent() = 0;
    virtual void ResetCurrent();
    /// Binds it to a texture unit. False without a texture.
    virtual bool ActivateTexture(int unit) const;

  protected:
    /// Beside its edges a target shows their texels, or is repeated.
    glslFBO(int width, int height, bool colour, bool repeats)
        : width(width), height(height), colour_(colour), repeats_(repeats) {}
    glslFBO(int size, bool colour) : glslFBO(size, size, colour, false) {}
    /// Keeps what is current, and draws here.
    bool Begin();

    int width, height;
    unsigned texid = 0, fboid = 0, rboid = 0;
    bool initOK = false;
    MMatrix cameraProjectionMatrix, cameraViewMatrix;
    int origView[4] = {};

  private:
    bool colour_, repeats_;
    int origFrame_ = 0;
};

/// The depth of the surface as the light sees it.
class glslShadowFBO : public glslFBO {
  public:
    glslShadowFBO() : glslFBO(2048, false) {}

    /// In the coordinates that are drawn.
    void SetLightPos(const MPoint& pos) { lightPos = pos; }
    void SetObjCenter(const MPoint& center) { objCenter = center; }
    bool MakeCurrent() override;
    bool ActivateTexture(int unit) const override;
    /// From the camera's coordinates to the map's, 0 to 1 on all axes.
    const MMatrix& TextureMatrix() const { return textureMatrix; }

  private:
    MPoint lightPos{0, 0, 10}, objCenter;
    MMatrix lightProjectionMatrix, lightViewMatrix, textureMatrix;
};

/// The depth of the surface as the camera sees it, in red and green.
class glslSSAOdepthFBO : public glslFBO {
  public:
    glslSSAOdepthFBO() : glslFBO(512, true) {}
    bool MakeCurrent() override;
};

/// The occlusion, in red.
class glslSSAO_FBO : public glslFBO {
  public:
    glslSSAO_FBO() : glslFBO(512, true) {}
    bool MakeCurrent() override;
};

}  // namespace VantrelSDK
