#pragma once

#include <ctime>

#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/math/LRay.h"

namespace VantrelSDK {

/// Rotates p counterclockwise about a centre; angles are radians throughout.
void RotatePt(const LPoint2& center, float angle, LPoint2& p);
/// Rotates v counterclockwise.
void RotateVec(float angle, LPoint2& v);

/// Rotates v about a unit axis by Rodrigues' formula: the part along the axis stays, the rest w
/// becomes w * cos + (w ^ axis) * sin, which turns clockwise as seen against the axis.
void RotateAroundVector(const LPoint3& axis, float angle, LPoint3& v);
/// The same by a quaternion.
void RotateAroundVectorQ(const LPoint3& axis, float angle, LPoint3& v);

/// What the barycentric functions give for a triangle without area: a triple whose sum isn't 1.
inline constexpr LPoint3 kNoBaryCoords{0.1f, 0, 0};

/// The barycentric triple of p by Cramer's rule on the determinant of the corners' positions: for
/// triangles whose plane stays clear of the coordinate origin. kNoBaryCoords when two corners are
/// equal or the determinant is 0.
LPoint3 CalcBaryCoords(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p);
/// The same for p's foot point on the triangle's plane.
LPoint3 CalcBaryCoordsNCP(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p);

/// The barycentric triple of p from signed areas; kNoBaryCoords for a triangle without area.
LPoint3 CalcBaryCoords2D(const LPoint2& a, const LPoint2& b, const LPoint2& c, const LPoint2& p);
LPoint3 CalcBaryCoords2D(const LPoint2I& a, const LPoint2I& b, const LPoint2I& c,
                         const LPoint2I& p);
/// From the areas of the three triangles that p makes with the edges, by Heron's formula. Areas
/// have no sign here: outside the triangle the values stay positive and their sum exceeds 1.
LPoint3 CalcBaryCoords2D(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p);

/// The hit of the ray origin + dir * t with a triangle; see LRay::Intersect, which saves the
/// preparation of the ray where one ray meets many triangles.
inline bool IntersectTri(const LPoint3& a, const LPoint3& b, const LPoint3& c,
                         const LPoint3& origin, const LPoint3& dir, float& t, LPoint3& hit,
                         LPoint3& bary, bool cullBackfaces) {
    return LRay(origin, dir).Intersect(a, b, c, t, hit, bary, cullBackfaces);
}

/// Where the line origin + dir * t pierces a sphere: t0 <= t1, and t0 may be negative. False, with
/// both unchanged, when it misses or the sphere lies behind the origin.
bool IntersectSphere(const LPoint3& center, float r, const LPoint3& origin, const LPoint3& dir,
                     float& t0, float& t1);

/// How many zeros pad n to nine digits, as in the names of frames; negative for ten digits.
int numZeros(int n);

/// The time from start to end, with nanoseconds within 0 to 999999999.
timespec diff(const timespec& start, const timespec& end);

}  // namespace VantrelSDK
