#pragma once

#include "maya/MFloatPoint.h"
#include "maya/MVector.h"

/// A position, homogeneous: a row that MMatrix takes from the left.
class MPoint {
  public:
    MPoint() = default;
    MPoint(double x, double y, double z = 0, double w = 1) : x(x), y(y), z(z), w(w) {}
    MPoint(const MVector& v) : x(v.x), y(v.y), z(v.z) {}
    MPoint(const MFloatPoint& p) : x(p.x), y(p.y), z(p.z), w(p.w) {}

    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    MPoint operator+(const MVector& v) const { return {x + v.x, y + v.y, z + v.z}; }
    MPoint operator-(const MVector& v) const { return {x - v.x, y - v.y, z - v.z}; }
    MVector operator-(const MPoint& o) const { return {x - o.x, y - o.y, z - o.z}; }
    MPoint operator*(double s) const { return {x * s, y * s, z * s}; }
    MPoint& operator+=(const MVector& v) { return *this = *this + v; }
    MPoint& operator-=(const MVector& v) { return *this = *this - v; }
    bool operator==(const MPoint& o) const { return x == o.x && y == o.y && z == o.z && w == o.w; }
    bool operator!=(const MPoint& o) const { return !(*this == o); }

    double distanceTo(const MPoint& o) const { return (*this - o).length(); }
    bool isEquivalent(const MPoint& o, double tolerance = double(1e-10)) const {
        return distanceTo(o) <= tolerance;
    }
    /// Divides by w.
    void cartesianize() {
        if (w != 0 && w != 1) *this = MPoint(x / w, y / w, z / w);
    }

    double x = 0, y = 0, z = 0, w = 1;
};
