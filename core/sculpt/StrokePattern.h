#pragma once

#include <span>

#include "core/math/LPoint2.h"

namespace VantrelSDK {

class LPattern;

/// The pattern of a step, and how it lies.
struct StrokePattern {
    enum class Lie {
        kBrush,  ///< in the frame of the brush
        kSheet,  ///< on a sheet in the view
        kUVs,    ///< on the surface, by its UVs
    };

    /// Null for none; borrowed.
    const LPattern* pattern = nullptr;
    Lie lie = Lie::kBrush;
    /// For kUVs: the UV point of each vertex of the active level, and the points.
    const int* pointOf = nullptr;
    std::span<const LPoint2> points = {};

    explicit operator bool() const { return pattern; }
    LPoint2 UV(int v) const { return points[static_cast<size_t>(pointOf[v])]; }
};

}  // namespace VantrelSDK
