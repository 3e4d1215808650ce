#pragma once

#include <cmath>

/// A direction with a length; a row that MMatrix takes from the left, without its translation.
class MVector {
  public:
    MVector() = default;
    MVector(double x, double y, double z = 0) : x(x), y(y), z(z) {}
    explicit MVector(const double (&v)[3]) : x(v[0]), y(v[1]), z(v[2]) {}

    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }
    MVector operator+(const MVector& o) const { return {x + o.x, y + o.y, z + o.z}; }
    MVector operator-(const MVector& o) const { return {x - o.x, y - o.y, z - o.z}; }
    MVector operator-() const { return {-x, -y, -z}; }
    MVector operator*(double s) const { return {x * s, y * s, z * s}; }
    MVector operator/(double s) const { return {x / s, y / s, z / s}; }
    friend MVector operator*(double s, const MVector& v) { return v * s; }
    MVector& operator+=(const MVector& o) { return *this = *this + o; }
    MVector& operator-=(const MVector& o) { return *this = *this - o; }
    MVector& operator*=(double s) { return *this = *this * s; }
    MVector& operator/=(double s) { return *this = *this / s; }
    /// The dot product.
    double operator*(const MVector& o) const { return x * o.x + y * o.y + z * o.z; }
    /// The cross product.
    MVector operator^(const MVector& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    bool operator==(const MVector& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const MVector& o) const { return !(*this == o); }

    double length() const { return std::sqrt(*this * *this); }
    /// Scales to a length of 1; a zero vector stays.
    void normalize() { *this = normal(); }
    MVector normal() const {
        const double l = length();
        return l > 0 ? *this / l : *this;
    }
    bool isEquivalent(const MVector& o, double tolerance = double(1e-10)) const {
        return (*this - o).length() <= tolerance;
    }

    double x = 0, y = 0, z = 0;
};
