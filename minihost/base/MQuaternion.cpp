#include "maya/MQuaternion.h"

#include <cmath>

#include "maya/MEulerRotation.h"

MQuaternion::MQuaternion(double angle, const MVector& axis) {
    const MVector n = axis.normal() * std::sin(angle / 2);
    x = n.x;
    y = n.y;
    z = n.z;
    w = std::cos(angle / 2);
}

MQuaternion MQuaternion::operator*(const MQuaternion& right) const {
    const MQuaternion &a = right, &b = *this;  // rows: the left turn is the inner one
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
            a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

MQuaternion MQuaternion::inverse() const {
    const double norm = x * x + y * y + z * z + w * w;
    return norm > 0 ? MQuaternion(-x / norm, -y / norm, -z / norm, w / norm) : MQuaternion();
}

MQuaternion& MQuaternion::normalizeIt() {
    const double length = std::sqrt(x * x + y * y + z * z + w * w);
    if (length > 0) *this = MQuaternion(x / length, y / length, z / length, w / length);
    return *this;
}

MMatrix MQuaternion::asMatrix() const {
    MMatrix m;
    m[0][0] = 1 - 2 * (y * y + z * z);
    m[0][1] = 2 * (x * y + z * w);
    m[0][2] = 2 * (x * z - y * w);
    m[1][0] = 2 * (x * y - z * w);
    m[1][1] = 1 - 2 * (x * x + z * z);
    m[1][2] = 2 * (y * z + x * w);
    m[2][0] = 2 * (x * z + y * w);
    m[2][1] = 2 * (y * z - x * w);
    m[2][2] = 1 - 2 * (x * x + y * y);
    return m;
}

MEulerRotation MQuaternion::asEulerRotation() const {
    return MEulerRotation::decompose(asMatrix(), MEulerRotation::kXYZ);
}
