#pragma once

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// The plane of the points p with normal % p + d = 0. The normal keeps the length it came with.
/// 20 bytes, also in a stream.
struct LPlane {
    LPoint3 normal;
    float d = 0;
    /// One over the normal's length, which turns normal % p + d into a distance; 0 for no normal.
    float reciprocal = 0;

    constexpr LPlane() = default;
    LPlane(const LPoint3& point, const LPoint3& normal_);
    /// The plane through three points; its normal points to where they turn counterclockwise.
    LPlane(const LPoint3& a, const LPoint3& b, const LPoint3& c);

    /// Strictly on the side that the normal points to.
    bool IsAbove(const LPoint3& p) const { return normal % p + d > 0; }
};

static_assert(sizeof(LPlane) == 20);

}  // namespace VantrelSDK
