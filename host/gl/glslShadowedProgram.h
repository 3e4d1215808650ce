#pragma once

#include <map>
#include <memory>

#include "host/gl/glslShader.h"

namespace VantrelSDK {

/// Draws the surface without a texture: light, shadow, occlusion, vertex colour, stencil. For each
/// filter, with occlusion and without, there is a program of its own, loaded at its first use.
class glslShadowedProgram : public glslGenericProgram {
  public:
    /// What is drawn: its colours differ.
    enum Mode { kSurface, kIsoLines, kWireframe };
    /// Of the vertex attribute, in all programs.
    static constexpr int kStencilLoc = 7;

    glslShadowedProgram();
    ~glslShadowedProgram() override;

    bool LoadShaders() override;
    using glslGenericProgram::LoadShaders;
    void UnLoadShaders() override;
    bool UseProgram() override;

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
    int GetStencilLoc() const { return kStencilLoc; }

  protected:
    std::string VertexSource() const override;
    /// Of the program that is due.
    std::string FragmentSource() const override;
    bool setupUniformVariables() override { return true; }
    /// Whether a stencil texture is a part of what is compiled.
    virtual bool ShowsStencilTex() const { return useStencilTex; }
    /// What else is: lines before the fragment shader, and what it reads.
    virtual std::string Defines() const { return {}; }
    virtual void FillOwn(Upload& to) const;

  private:
    class Variant;
    struct Filter;
    static const Filter kFilters[];

    const Filter* ChooseFilter() const;
    int Key() const;
    Variant& Due() const;
    void Fill(Upload& to) const;

    mutable std::map<int, std::unique_ptr<Variant>> variants_;
    float filterSize = 5;
    bool useSpeculars = true, useDiffuse = true, useShadow = true, useSSAO = false;
    float viewWidth = 512, viewHeight = 512;
    bool useColor = false, useStencil = false, invStencil = false, useStencilTex = false;
    bool selected = true;
    int mode = kSurface;
    float opacity = 1, stencilTexOpac = 0.2f, bboxext = 1;
    int stenciluvch = 0;
};

}  // namespace VantrelSDK
