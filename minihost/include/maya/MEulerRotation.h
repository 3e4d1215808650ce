#pragma once

#include "maya/MMatrix.h"
#include "maya/MQuaternion.h"

/// Three turns in radians about the axes, in an order: kXYZ turns about x first.
class MEulerRotation {
  public:
    enum RotationOrder { kXYZ, kYZX, kZXY, kXZY, kYXZ, kZYX };

    MEulerRotation() = default;
    MEulerRotation(double x, double y, double z, RotationOrder order = kXYZ)
        : x(x), y(y), z(z), order(order) {}

    MMatrix asMatrix() const;
    MQuaternion asQuaternion() const;
    /// The turns in an order that give the rotation of a matrix without scale.
    static MEulerRotation decompose(const MMatrix& matrix, RotationOrder order);

    double x = 0, y = 0, z = 0;
    RotationOrder order = kXYZ;
};
