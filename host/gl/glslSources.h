#pragma once

#include <string>

namespace VantrelSDK {

// The texts of the shaders, GLSL 1.10.

/// The mean of 8 x 8 taps.
extern const char kBlur8x8[];
/// The ways to filter a shadow, from the hardest to the softest, and the blur of the occlusion.
std::string ShadowFilters();

/// The sculpted surface, its lines too. The fragment shader is the header, ShadowFilters and main.
/// What it does beyond plain light is compiled in: a driver may run what a variable turns off.
/// SHADOW_FILTER, where it is defined, is one of the filters, and with USE_SSAO there is
/// occlusion, with USE_STENCIL_TEX a texture of stencils, with USE_TEXTURE the texture of a
/// material, over which vertex colours lie by their alpha.
extern const char kSurfaceVertex[], kSurfaceHeader[], kSurfaceMain[];
/// A textured quad that lies over the view, in the texture's colours or in its red as grey.
extern const char kOverlayVertex[], kOverlayFragment[];
/// Depth from the camera in 16 bits, in red and green; alpha 0 off the surface.
extern const char kDepthVertex[], kDepthFragment[];
/// A mask of where the surface faces: `term` is the grey that it writes, of dir and N.
std::string FacingVertex(const char* term);
extern const char kFacingFragment[];
/// A mask of the occlusion; its fragment shader stands behind kBlur8x8.
extern const char kPlainVertex[], kOcclusionMaskFragment[];
/// How much of what is around a pixel lies before it.
extern const char kOcclusionVertex[], kOcclusionFragment[];

}  // namespace VantrelSDK
