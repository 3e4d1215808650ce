#pragma once

#include <algorithm>

#include "core/math/LColor.h"

namespace VantrelSDK {

// The algebra of paint. Paint is a colour multiplied by its coverage, with the coverage as alpha:
// laid over a surface of colour c it shows c * (1 - alpha) + colour. Coverage and stencils are 0 to
// 1. Source of the mixing: T. Porter and T. Duff, Compositing Digital Images, SIGGRAPH 1984 (the
// operator "over" on premultiplied colours).

/// A coat of colour c and coverage `a` over what is there.
inline LAColor MixedPaint(const LAColor& under, float a, const LColor& c) {
    const float keep = 1 - a;
    return {under.r * keep + a * c.r, under.g * keep + a * c.g, under.b * keep + a * c.b,
            std::min(under.a * keep + a, 1.0f)};
}

/// The share `a` of the paint taken off.
inline LAColor FadedPaint(const LAColor& paint, float a) {
    const LAColor faded = paint * (1 - a);
    return {faded.r, faded.g, faded.b, std::min(faded.a, 1.0f)};
}

/// The share t of the way to another paint, held to 0 to 1.
inline LAColor MovedPaint(const LAColor& paint, const LAColor& to, float t) {
    LAColor moved = paint + (to - paint) * t;
    moved.ClampMinMax();
    return moved;
}

inline float MixedStencil(float stencil, float s) {
    return std::min(stencil * (1 - s) + s, 1.0f);
}

inline float FadedStencil(float stencil, float s) {
    return std::min(stencil * (1 - s), 1.0f);
}

inline float MovedStencil(float stencil, float to, float t) {
    return std::clamp(stencil + t * (to - stencil), 0.0f, 1.0f);
}

/// What a surface shows under paint.
inline LColor PaintedColor(const LColor& surface, const LAColor& paint) {
    return surface * (1 - paint.a) + LColor(paint.r, paint.g, paint.b);
}

}  // namespace VantrelSDK
