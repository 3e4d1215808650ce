#include "core/math/LMatrix3.h"

#include <cmath>

namespace VantrelSDK {

namespace {

/// Rotates the plane of two coordinates, the first towards the second, in every row.
void RotateRows(LMatrix3& m, float LPoint3::*first, float LPoint3::*second, float angle) {
    if (angle == 0) return;
    const float c = std::cos(angle), s = std::sin(angle);
    for (LPoint3& row : m.m) {
        const float u = row.*first, v = row.*second;
        row.*first = u * c - v * s;
        row.*second = u * s + v * c;
    }
}

/// The adjugate times `scale`, and the translation that undoes m's under it.
LMatrix3 ScaledAdjugate(const LMatrix3& m, float scale) {
    const LPoint3 x = m[1] ^ m[2], y = m[2] ^ m[0], z = m[0] ^ m[1];
    LMatrix3 inverse{{LPoint3(x.x, y.x, z.x) * scale, LPoint3(x.y, y.y, z.y) * scale,
                      LPoint3(x.z, y.z, z.z) * scale, LPoint3::Zero},
                     false};
    inverse[3] = -inverse.TransfromVector(m[3]);
    return inverse;
}

}  // namespace

LMatrix3 LMatrix3::operator*(const LMatrix3& o) const {
    if (degenerated || o.degenerated) return Degenerated;
    return {{o.TransfromVector(m[0]), o.TransfromVector(m[1]), o.TransfromVector(m[2]),
             o.TransfromPoint(m[3])},
            false};
}

LMatrix3 LMatrix3::operator+(const LMatrix3& o) const {
    if (degenerated || o.degenerated) return Degenerated;
    return {{m[0] + o[0], m[1] + o[1], m[2] + o[2], m[3] + o[3]}, false};
}

LMatrix3 LMatrix3::operator-(const LMatrix3& o) const {
    if (degenerated || o.degenerated) return Degenerated;
    return {{m[0] - o[0], m[1] - o[1], m[2] - o[2], m[3] - o[3]}, false};
}

LMatrix3& LMatrix3::operator*=(float f) {
    for (LPoint3& row : m) row *= f;
    return *this;
}

bool LMatrix3::Equals(const LMatrix3& o, float eps) const {
    if (degenerated && o.degenerated) return true;
    for (int row = 0; row < 4; ++row) {
        const LPoint3 d = m[row] - o[row];
        if (!(std::abs(d.x) <= eps && std::abs(d.y) <= eps && std::abs(d.z) <= eps)) return false;
    }
    return true;
}

void LMatrix3::Invert() {
    *this = GetInverse(*this);
}

// Rodrigues' formula as a matrix.
void LMatrix3::SetRotation(const LPoint3& axis, float angle) {
    IdentityMatrix();
    if (angle == 0) return;
    const float c = std::cos(angle), s = std::sin(angle);
    const LPoint3 k = axis * (1 - c), w = axis * s;
    m[0] = {k.x * axis.x + c, k.x * axis.y + w.z, k.x * axis.z - w.y};
    m[1] = {k.y * axis.x - w.z, k.y * axis.y + c, k.y * axis.z + w.x};
    m[2] = {k.z * axis.x + w.y, k.z * axis.y - w.x, k.z * axis.z + c};
}

void LMatrix3::RotateX(float angle) {
    RotateRows(*this, &LPoint3::y, &LPoint3::z, angle);
}
void LMatrix3::RotateY(float angle) {
    RotateRows(*this, &LPoint3::z, &LPoint3::x, angle);
}
void LMatrix3::RotateZ(float angle) {
    RotateRows(*this, &LPoint3::x, &LPoint3::y, angle);
}

LMatrix3 GetInverse(const LMatrix3& m) {
    if (m.degenerated) return m;
    const float det = det4x4(m);
    return ScaledAdjugate(m, det == 0 ? 1e7f : 1 / det);
}

float det2x2(float a, float b, float c, float d) {
    return a * d - b * c;
}
float det3x3(const LPoint3& a, const LPoint3& b, const LPoint3& c) {
    return a % (b ^ c);
}
float det4x4(const LMatrix3& m) {
    return det3x3(m[0], m[1], m[2]);
}

LMatrix3 adjoint(const LMatrix3& m) {
    return ScaledAdjugate(m, 1);
}

LMatrix3 tminverse(const LMatrix3& m) {
    if (m.degenerated) return m;
    const float det = det4x4(m);
    return std::abs(det) < 1e-8f ? LMatrix3::Identity : ScaledAdjugate(m, 1 / det);
}

}  // namespace VantrelSDK
