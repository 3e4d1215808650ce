#pragma once

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A quaternion. 16 bytes, also in a stream.
struct LQuat {
    float w = 1;
    LPoint3 v;

    constexpr LQuat() = default;
    /// The right-handed rotation about a unit axis, in radians: p' = q p q*.
    LQuat(const LPoint3& axis, float angle);
    constexpr LQuat(float w_, float x, float y, float z) : w(w_), v(x, y, z) {}
    /// Euler angles in radians: the rotation about x first, then y, then z.
    LQuat(float x, float y, float z);

    LQuat operator*(const LQuat& o) const;
    LQuat operator+(const LQuat& o) const;

    LQuat GetConjugated() const { return {w, -v.x, -v.y, -v.z}; }
    float GetLen() const;
    LQuat GetNormalized() const;
    /// The reciprocal; zero for zero.
    LQuat GetInversed() const;
    /// Scales to unit length; zero stays zero.
    void Normalize();
};

static_assert(sizeof(LQuat) == 16);

}  // namespace VantrelSDK
