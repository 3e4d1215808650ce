#pragma once

#include <cmath>

/// MVector in single precision.
class MFloatVector {
  public:
    MFloatVector() = default;
    MFloatVector(float x, float y, float z = 0) : x(x), y(y), z(z) {}
    explicit MFloatVector(const float (&v)[3]) : x(v[0]), y(v[1]), z(v[2]) {}

    float operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    float& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }
    MFloatVector operator+(const MFloatVector& o) const { return {x + o.x, y + o.y, z + o.z}; }
    MFloatVector operator-(const MFloatVector& o) const { return {x - o.x, y - o.y, z - o.z}; }
    MFloatVector operator-() const { return {-x, -y, -z}; }
    MFloatVector operator*(float s) const { return {x * s, y * s, z * s}; }
    MFloatVector operator/(float s) const { return {x / s, y / s, z / s}; }
    friend MFloatVector operator*(float s, const MFloatVector& v) { return v * s; }
    MFloatVector& operator+=(const MFloatVector& o) { return *this = *this + o; }
    MFloatVector& operator-=(const MFloatVector& o) { return *this = *this - o; }
    MFloatVector& operator*=(float s) { return *this = *this * s; }
    MFloatVector& operator/=(float s) { return *this = *this / s; }
    /// The dot product.
    float operator*(const MFloatVector& o) const { return x * o.x + y * o.y + z * o.z; }
    /// The cross product.
    MFloatVector operator^(const MFloatVector& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    bool operator==(const MFloatVector& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const MFloatVector& o) const { return !(*this == o); }

    float length() const { return std::sqrt(*this * *this); }
    /// Scales to a length of 1; a zero vector stays.
    void normalize() { *this = normal(); }
    MFloatVector normal() const {
        const float l = length();
        return l > 0 ? *this / l : *this;
    }
    bool isEquivalent(const MFloatVector& o, float tolerance = float(1e-10)) const {
        return (*this - o).length() <= tolerance;
    }

    float x = 0, y = 0, z = 0;
};
