#pragma once

#include "host/gl/glslShader.h"

namespace VantrelSDK {

/// Draws a textured quad over the view: a pattern's stencil, a reference image. The texture is
/// bound to unit 0, and unit 0's matrix places it.
class glslStencilTexProgram : public glslGenericProgram {
  public:
    /// OpenGL's name of the texture. Without one nothing is drawn with the program, which is told.
    void SetTexId(unsigned id) { texid = id; }
    void SetOpacity(float value) { opacity = value; }
    /// In the texture's colours; else its red as grey.
    void SetColored(bool on) { colored = on; }

    bool UseProgram() override;

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    unsigned texid = 0;
    float opacity = 0.5f;
    bool colored = false;
};

}  // namespace VantrelSDK
