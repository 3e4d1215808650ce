#include "core/math/LQuat.h"

#include <cmath>

namespace VantrelSDK {

LQuat::LQuat(const LPoint3& axis, float angle)
    : w(std::cos(angle / 2)), v(axis * std::sin(angle / 2)) {}

LQuat::LQuat(float x, float y, float z)
    : LQuat(LQuat(LPoint3(0, 0, 1), z) * LQuat(LPoint3(0, 1, 0), y) * LQuat(LPoint3(1, 0, 0), x)) {}

LQuat LQuat::operator*(const LQuat& o) const {
    const LPoint3 p = o.v * w + v * o.w + (v ^ o.v);
    return {w * o.w - v % o.v, p.x, p.y, p.z};
}

LQuat LQuat::operator+(const LQuat& o) const {
    return {w + o.w, v.x + o.v.x, v.y + o.v.y, v.z + o.v.z};
}

float LQuat::GetLen() const {
    return std::sqrt(w * w + v.LenSq());
}

LQuat LQuat::GetNormalized() const {
    LQuat q = *this;
    q.Normalize();
    return q;
}

LQuat LQuat::GetInversed() const {
    LQuat q = GetConjugated();
    const float lenSq = w * w + v.LenSq();
    if (lenSq != 0) q.w /= lenSq, q.v /= lenSq;
    return q;
}

void LQuat::Normalize() {
    const float len = GetLen();
    if (len != 0) w /= len, v /= len;
}

}  // namespace VantrelSDK
