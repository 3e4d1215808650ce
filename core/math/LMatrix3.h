#pragma once

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// An affine transform of row vectors: p' = p.x * X + p.y * Y + p.z * Z + T.
///
/// The rows are the X, Y and Z axes and the translation T. `degenerated` marks a frame that could
/// not be formed, such as that of a collapsed face: points are then only translated, vectors pass
/// unchanged, and what is computed from it is degenerated too.
struct LMatrix3 {
    LPoint3 m[4] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}};
    bool degenerated = false;

    static const LMatrix3 Identity;
    /// The identity's numbers with the flag set.
    static const LMatrix3 Degenerated;

    LPoint3& operator[](int row) { return m[row]; }
    const LPoint3& operator[](int row) const { return m[row]; }

    void IdentityMatrix() { *this = LMatrix3(); }
    /// All twelve numbers become zero; the flag is cleared.
    void Zero() { *this = {{{}, {}, {}, {}}, false}; }

    LPoint3 TransfromVector(const LPoint3& v) const {
        return degenerated ? v : m[0] * v.x + m[1] * v.y + m[2] * v.z;
    }
    void TransfromVector2(LPoint3& v) const { v = TransfromVector(v); }
    LPoint3 TransfromPoint(const LPoint3& p) const { return TransfromVector(p) + m[3]; }
    void TransfromPoint2(LPoint3& p) const { p = TransfromPoint(p); }

    /// The transform that applies this one first and then o. Degenerated if either is, as are the
    /// sum and the difference, which are taken number by number.
    LMatrix3 operator*(const LMatrix3& o) const;
    LMatrix3 operator+(const LMatrix3& o) const;
    LMatrix3 operator-(const LMatrix3& o) const;
    LMatrix3& operator*=(const LMatrix3& o) { return *this = *this * o; }
    LMatrix3& operator+=(const LMatrix3& o) { return *this = *this + o; }
    LMatrix3& operator-=(const LMatrix3& o) { return *this = *this - o; }
    /// Scales all twelve numbers, the translation too.
    LMatrix3& operator*=(float f);
    /// Exact comparison of the flag and all numbers.
    bool operator==(const LMatrix3& o) const = default;
    /// Two degenerated matrices are equal; else no number may differ by more than eps.
    bool Equals(const LMatrix3& o, float eps) const;

    /// Becomes its inverse (see GetInverse); a degenerated matrix stays as it is.
    void Invert();
    /// The right-handed rotation about a unit axis, in radians, without translation.
    void SetRotation(const LPoint3& axis, float angle);
    /// Rotate all four rows about a coordinate axis, right-handed, in radians.
    void RotateX(float angle);
    void RotateY(float angle);
    void RotateZ(float angle);
};

static_assert(sizeof(LMatrix3) == 52);

inline constexpr LMatrix3 LMatrix3::Identity{};
inline constexpr LMatrix3 LMatrix3::Degenerated{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}, true};

/// The adjugate of the 3 x 3 part over its determinant, with the translation that belongs to it. A
/// determinant of exactly 0 scales the adjugate by 1e7 instead: large, but finite for the numbers
/// of ordinary scenes. The inverse of a degenerated matrix is that matrix.
LMatrix3 GetInverse(const LMatrix3& m);

/// The determinant of the rows (a, b), (c, d).
float det2x2(float a, float b, float c, float d);
/// The determinant of the matrix with these rows.
float det3x3(const LPoint3& a, const LPoint3& b, const LPoint3& c);
/// The determinant of m as a 4 x 4 matrix with the last column (0, 0, 0, 1).
float det4x4(const LMatrix3& m);
/// The adjugate of m as a 4 x 4 matrix, less its last column, which is (0, 0, 0, det4x4(m)).
LMatrix3 adjoint(const LMatrix3& m);
/// The inverse for well-scaled matrices: the identity when the determinant is under 1e-8 in size.
LMatrix3 tminverse(const LMatrix3& m);

}  // namespace VantrelSDK
