#pragma once

#include <cstdint>

#include "host/gl/GLTargets.h"

namespace VantrelSDK {

/// An image that is drawn into: between MakeCurrent and ResetCurrent the view is its texels, from
/// -1 to 1 on both axes, plain colours and textures, blending off. May be let go of without a
/// context.
class MLTextureFBO : public glslFBO {
  public:
    MLTextureFBO(int width, int height) : glslFBO(width, height, true, true) {}
    ~MLTextureFBO() override;

    bool MakeCurrent() override;
    /// All of it, width * height * 4 bytes, RGBA, rows from the bottom. False without a texture.
    bool ReadTexture(uint8_t* bytes) const;
    unsigned texture() const { return texid; }
};

/// Draws a texture over all that is current, from -1 to 1, as it lies in a unit square.
void DrawWhole(unsigned texture);
/// The same with what is bound.
void DrawWhole();
/// Whether the driver takes a texture of four bytes a texel of this size.
bool FitsOnCard(int width, int height);

}  // namespace VantrelSDK
