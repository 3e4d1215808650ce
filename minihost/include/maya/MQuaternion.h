#pragma once

#include "maya/MMatrix.h"
#include "maya/MVector.h"

class MEulerRotation;

/// A rotation as a unit quaternion; q1 * q2 does q1 first, as the matrices do.
class MQuaternion {
  public:
    MQuaternion() = default;
    MQuaternion(double x, double y, double z, double w) : x(x), y(y), z(z), w(w) {}
    /// About an axis, in radians.
    MQuaternion(double angle, const MVector& axis);

    MQuaternion operator*(const MQuaternion& right) const;
    bool operator==(const MQuaternion& o) const {
        return x == o.x && y == o.y && z == o.z && w == o.w;
    }
    MQuaternion conjugate() const { return {-x, -y, -z, w}; }
    MQuaternion inverse() const;
    MQuaternion& normalizeIt();
    MMatrix asMatrix() const;
    MEulerRotation asEulerRotation() const;

    double x = 0, y = 0, z = 0, w = 1;
};
