#pragma once

#include "host/gl/glslShadowedProgram.h"

namespace VantrelSDK {

/// Draws the surface with the map of a material, which is bound to unit 3; vertex colours lie over
/// it by their alpha. All else is as without a map, but that there is no mode, and that a stencil
/// texture is a part of the map.
class glslShadowedTexProgram : public glslShadowedProgram {
  public:
    static constexpr int kUnit = 3;

    void SetTextureOpacity(float opacity) { texopac = opacity; }
    /// Of the map; and how many the object has. They are for the lists that carry the UVs.
    void SetTextureUVch(int channel) { texuvch = channel; }
    void SetNumUVchannels(int count) { numUVch = count; }

  protected:
    bool ShowsStencilTex() const override { return false; }
    std::string Defines() const override { return "#define USE_TEXTURE\n"; }
    void FillOwn(Upload& to) const override;

  private:
    using glslShadowedProgram::SetMode;

    float texopac = 0.5f;
    int texuvch = 0, numUVch = 1;
};

}  // namespace VantrelSDK
