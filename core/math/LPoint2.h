#pragma once

#include <cmath>

namespace VantrelSDK {

/// A 2D vector of floats: UV coordinates and screen positions.
struct LPoint2 {
    float x = 0, y = 0;

    static const LPoint2 Zero;

    constexpr LPoint2() = default;
    constexpr LPoint2(float x_, float y_) : x(x_), y(y_) {}

    constexpr LPoint2 operator+(const LPoint2& o) const { return {x + o.x, y + o.y}; }
    constexpr LPoint2 operator-(const LPoint2& o) const { return {x - o.x, y - o.y}; }
    constexpr LPoint2 operator-() const { return {-x, -y}; }
    constexpr LPoint2& operator+=(const LPoint2& o) { return x += o.x, y += o.y, *this; }
    constexpr LPoint2& operator-=(const LPoint2& o) { return x -= o.x, y -= o.y, *this; }
    constexpr LPoint2 operator*(float f) const { return {x * f, y * f}; }
    constexpr LPoint2& operator*=(float f) { return x *= f, y *= f, *this; }
    constexpr LPoint2 operator/(float f) const { return {x / f, y / f}; }
    constexpr LPoint2& operator/=(float f) { return x /= f, y /= f, *this; }
    /// Exact comparison; see Equals for a tolerance.
    constexpr bool operator==(const LPoint2& o) const = default;

    /// The z component of the cross product.
    constexpr float operator^(const LPoint2& o) const { return x * o.y - o.x * y; }
    /// The dot product.
    constexpr float operator%(const LPoint2& o) const { return x * o.x + y * o.y; }

    float Len() const { return std::sqrt(LenSq()); }
    constexpr float LenSq() const { return x * x + y * y; }
    /// Scales to unit length; the zero vector stays zero.
    void Normalize() {
        const float len = Len();
        if (len != 0) *this *= 1.0f / len;
    }
    bool Equals(const LPoint2& o, float eps) const { return (*this - o).LenSq() < eps * eps; }
};

inline constexpr LPoint2 LPoint2::Zero{};

/// Pixel coordinates.
struct LPoint2I {
    int x = 0, y = 0;
};

}  // namespace VantrelSDK
