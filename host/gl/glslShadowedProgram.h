#pragma once

#include "host/gl/glslShader.h"

namespace VantrelSDK {

/// Draws the surface without a texture: light, shadow, occlusion, vertex colour, stencil.
class glslShadowedProgram : public glslGenericProgram {
  public:
    /// What is drawn: its colours differ.
    enum Mode { kSurface, kIsoLines, kWireframe };

    /// In taps an axis; the table of filters picks the one to use.
    void SetFilterSize(float size) { filterSize = size; }
    void SetUseSpeculars(bool on) { useSpeculars = on; }
    void SetUseDiffuse(bool on) { useDiffuse = on; }
    void SetUseShadow(bool on) { useShadow = on; }
    void SetUseSSAO(bool on) { useSSAO = on; }
    /// Of the port, in pixels.
    void SetViewSize(float width, float height) { viewWidth = width, viewHeight = height; }
    void SetUseColor(bool on) { useColor = on; }
    void SetUseStencil(bool on) { useStencil = on; }
    void SetInvertStencil(bool on) { invStencil = on; }
    void SetUseStencilTex(bool on) { useStencilTex = on; }
    void SetStencilTexOpac(float opacity) { stencilTexOpac = opacity; }
    void SetStencilTexUVch(int channel) { stenciluvch = channel; }
    void SetSelected(bool on) { selected = on; }
    void SetMode(int which) { mode = which; }
    void SetOpacity(float value) { opacity = value; }
    void SetBboxExtent(float extent) { bboxext = extent; }
    /// Of the vertex attribute; -1 before the program was in use.
    int GetStencilLoc() const { return stencilLoc; }

  protected:
    std::string VertexSource() const override;
    std::string FragmentSource() const override;
    bool setupUniformVariables() override;

  private:
    float filterSize = 5;
    bool useSpeculars = true, useDiffuse = true, useShadow = true, useSSAO = false;
    float viewWidth = 512, viewHeight = 512;
    bool useColor = false, useStencil = false, invStencil = false, useStencilTex = false;
    bool selected = true;
    int mode = kSurface;
    float opacity = 1, stencilTexOpac = 0.2f, bboxext = 1;
    int stenciluvch = 0, stencilLoc = -1;
};

}  // namespace VantrelSDK
