#pragma once

#include "maya/MFloatVector.h"

/// MPoint in single precision.
class MFloatPoint {
  public:
    MFloatPoint() = default;
    MFloatPoint(float x, float y, float z = 0, float w = 1) : x(x), y(y), z(z), w(w) {}
    MFloatPoint(const MFloatVector& v) : x(v.x), y(v.y), z(v.z) {}

    float operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    float& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    MFloatPoint operator+(const MFloatVector& v) const { return {x + v.x, y + v.y, z + v.z}; }
    MFloatPoint operator-(const MFloatVector& v) const { return {x - v.x, y - v.y, z - v.z}; }
    MFloatVector operator-(const MFloatPoint& o) const { return {x - o.x, y - o.y, z - o.z}; }
    MFloatPoint operator*(float s) const { return {x * s, y * s, z * s}; }
    MFloatPoint& operator+=(const MFloatVector& v) { return *this = *this + v; }
    MFloatPoint& operator-=(const MFloatVector& v) { return *this = *this - v; }
    bool operator==(const MFloatPoint& o) const {
        return x == o.x && y == o.y && z == o.z && w == o.w;
    }
    bool operator!=(const MFloatPoint& o) const { return !(*this == o); }

    float distanceTo(const MFloatPoint& o) const { return (*this - o).length(); }
    bool isEquivalent(const MFloatPoint& o, float tolerance = float(1e-10)) const {
        return distanceTo(o) <= tolerance;
    }
    /// Divides by w.
    void cartesianize() {
        if (w != 0 && w != 1) *this = MFloatPoint(x / w, y / w, z / w);
    }

    float x = 0, y = 0, z = 0, w = 1;
};
