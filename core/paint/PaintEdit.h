#pragma once

namespace VantrelSDK {

/// What an edit does to all colours or stencils at once.
enum class PaintEdit { Clear, Invert, Fill, ColorToStencil, StencilToColor };

}  // namespace VantrelSDK
