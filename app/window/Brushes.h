#pragma once

#include <span>

namespace kelmo {

/// A brush as a person chooses it.
struct Brush {
    int mode;
    const char* name;
    /// The key that takes it; empty for none.
    const char* key;
    const char* tip;
};

/// Those that work by dragging a part of the surface, and those that paint along a stroke.
std::span<const Brush> DragBrushes();
std::span<const Brush> PaintBrushes();
/// Null for a number that is none of them.
const Brush* FindBrush(int mode);
/// Whether a brush paints colours and stencils too.
bool Paints(int mode);

}  // namespace kelmo
