#include "core/math/LPlane.h"

namespace VantrelSDK {

LPlane::LPlane(const LPoint3& point, const LPoint3& normal_)
    : normal(normal_), d(-(normal_ % point)) {
    const float len = normal.Len();
    if (len != 0) reciprocal = 1 / len;
}

LPlane::LPlane(const LPoint3& a, const LPoint3& b, const LPoint3& c)
    : LPlane(a, (b - a) ^ (c - a)) {}

}  // namespace VantrelSDK
