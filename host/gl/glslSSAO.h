#pragma once

#include "host/gl/glslShader.h"

namespace VantrelSDK {

/// Writes how deep the surface lies, between the nearest and the farthest of the object.
class glslSSAOdepthShader : public glslGenericProgram {
  public:
    /// Distances from the camera.
    void SetFarNear(float far, float near) { zfar = far, znear = near; }

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    float zfar = 1, znear = 0;
};

/// Makes occlusion of depth, over a quad that fills the view.
class glslSSAOshader : public glslGenericProgram {
  public:
    /// Between taps, in parts of the view.
    void SetRadius(float value) { radius = value; }
    /// Along each axis.
    void SetSamples(int count) { samples = count; }

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    float radius = 0.01f;
    int samples = 20;
};

}  // namespace VantrelSDK
