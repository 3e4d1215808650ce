#pragma once

#include <cmath>

namespace VantrelSDK {

/// A 3D vector of floats: positions, offsets and directions. 12 bytes, also in a stream.
struct LPoint3 {
    float x = 0, y = 0, z = 0;

    static const LPoint3 Zero;

    constexpr LPoint3() = default;
    constexpr LPoint3(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}

    constexpr LPoint3 operator+(const LPoint3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    constexpr LPoint3 operator-(const LPoint3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    constexpr LPoint3 operator-() const { return {-x, -y, -z}; }
    constexpr LPoint3& operator+=(const LPoint3& o) { return x += o.x, y += o.y, z += o.z, *this; }
    constexpr LPoint3& operator-=(const LPoint3& o) { return x -= o.x, y -= o.y, z -= o.z, *this; }
    /// Adds f to every component.
    constexpr LPoint3& operator+=(float f) { return x += f, y += f, z += f, *this; }
    constexpr LPoint3& operator-=(float f) { return x -= f, y -= f, z -= f, *this; }
    constexpr LPoint3 operator*(float f) const { return {x * f, y * f, z * f}; }
    /// Multiplies in double precision and rounds once.
    constexpr LPoint3 operator*(double f) const {
        return {static_cast<float>(x * f), static_cast<float>(y * f), static_cast<float>(z * f)};
    }
    constexpr LPoint3& operator*=(float f) { return x *= f, y *= f, z *= f, *this; }
    constexpr LPoint3& operator*=(double f) { return *this = *this * f; }
    constexpr LPoint3 operator/(float f) const { return {x / f, y / f, z / f}; }
    constexpr LPoint3& operator/=(float f) { return x /= f, y /= f, z /= f, *this; }
    /// Exact comparison; see Equals for a tolerance.
    constexpr bool operator==(const LPoint3& o) const = default;

    /// The cross product. Binds weaker than + and ==: parenthesise it.
    constexpr LPoint3 operator^(const LPoint3& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    /// The dot product.
    constexpr float operator%(const LPoint3& o) const { return x * o.x + y * o.y + z * o.z; }

    float Len() const { return std::sqrt(LenSq()); }
    constexpr float LenSq() const { return x * x + y * y + z * z; }
    /// Scales to unit length; the zero vector stays zero.
    void Normalize() {
        const float len = Len();
        if (len != 0) *this *= 1.0f / len;
    }
    bool Equals(const LPoint3& o, float eps) const { return (*this - o).Len() < eps; }
};

inline constexpr LPoint3 LPoint3::Zero{};

/// A copy of v scaled to unit length; the zero vector stays zero.
inline LPoint3 Normalized(LPoint3 v) {
    v.Normalize();
    return v;
}

}  // namespace VantrelSDK
