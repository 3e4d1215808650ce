#include "core/math/Geometry.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/math/LQuat.h"

namespace VantrelSDK {

namespace {

double Distance(const LPoint3& a, const LPoint3& b) {
    return std::hypot(double(a.x) - b.x, double(a.y) - b.y, double(a.z) - b.z);
}

/// Heron's formula in Kahan's arrangement, which stays exact for needles.
double HeronArea(const LPoint3& p, const LPoint3& q, const LPoint3& r) {
    double s[3] = {Distance(p, q), Distance(q, r), Distance(r, p)};
    std::sort(s, s + 3, std::greater<>());
    const auto [a, b, c] = s;
    const double product = (a + (b + c)) * (c - (a - b)) * (c + (a - b)) * (a + (b - c));
    return 0.25 * std::sqrt(std::max(product, 0.0));
}

LPoint3 BaryFromAreas(double u, double v, double w, double total) {
    if (total == 0) return kNoBaryCoords;
    return {static_cast<float>(u / total), static_cast<float>(v / total),
            static_cast<float>(w / total)};
}

/// Twice the signed area. Doubles hold differences of floats of like size and of all ints exactly.
template <class Point>
double SignedArea(const Point& a, const Point& b, const Point& c) {
    return (double(b.x) - a.x) * (double(c.y) - a.y) - (double(c.x) - a.x) * (double(b.y) - a.y);
}

template <class Point>
LPoint3 BaryFromSignedAreas(const Point& a, const Point& b, const Point& c, const Point& p) {
    return BaryFromAreas(SignedArea(p, b, c), SignedArea(a, p, c), SignedArea(a, b, p),
                         SignedArea(a, b, c));
}

}  // namespace

void RotatePt(const LPoint2& center, float angle, LPoint2& p) {
    p -= center;
    RotateVec(angle, p);
    p += center;
}

void RotateVec(float angle, LPoint2& v) {
    const float c = std::cos(angle), s = std::sin(angle);
    v = {v.x * c - v.y * s, v.x * s + v.y * c};
}

void RotateAroundVector(const LPoint3& axis, float angle, LPoint3& v) {
    const LPoint3 along = axis * (axis % v), across = v - along;
    v = along + across * std::cos(angle) + (across ^ axis) * std::sin(angle);
}

void RotateAroundVectorQ(const LPoint3& axis, float angle, LPoint3& v) {
    const LQuat q(axis, -angle);
    v = (q * LQuat(0, v.x, v.y, v.z) * q.GetConjugated()).v;
}

LPoint3 CalcBaryCoords(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p) {
    if (a == b || b == c || c == a) return kNoBaryCoords;
    const float det = a % (b ^ c);
    if (det == 0) return kNoBaryCoords;
    return {(p % (b ^ c)) / det, (a % (p ^ c)) / det, (a % (b ^ p)) / det};
}

LPoint3 CalcBaryCoordsNCP(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p) {
    const LPoint3 normal = Normalized((b - a) ^ (c - a));
    return CalcBaryCoords(a, b, c, p - normal * (normal % (p - a)));
}

LPoint3 CalcBaryCoords2D(const LPoint2& a, const LPoint2& b, const LPoint2& c, const LPoint2& p) {
    return BaryFromSignedAreas(a, b, c, p);
}

LPoint3 CalcBaryCoords2D(const LPoint2I& a, const LPoint2I& b, const LPoint2I& c,
                         const LPoint2I& p) {
    return BaryFromSignedAreas(a, b, c, p);
}

LPoint3 CalcBaryCoords2D(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& p) {
    return BaryFromAreas(HeronArea(p, b, c), HeronArea(a, p, c), HeronArea(a, b, p),
                         HeronArea(a, b, c));
}

bool IntersectSphere(const LPoint3& center, float r, const LPoint3& origin, const LPoint3& dir,
                     float& t0, float& t1) {
    // In doubles: a sphere far away is lost to rounding in floats.
    const double x = double(origin.x) - center.x, y = double(origin.y) - center.y,
                 z = double(origin.z) - center.z;
    const double a = double(dir.x) * dir.x + double(dir.y) * dir.y + double(dir.z) * dir.z;
    const double halfB = x * dir.x + y * dir.y + z * dir.z;
    const double c = x * x + y * y + z * z - double(r) * r;
    const double discriminant = halfB * halfB - a * c;
    if (a == 0 || !(discriminant >= 0)) return false;
    const double root = std::sqrt(discriminant);
    if (root - halfB < 0) return false;
    t0 = static_cast<float>((-halfB - root) / a);
    t1 = static_cast<float>((-halfB + root) / a);
    return true;
}

int numZeros(int n) {
    int digits = 1;
    while (n /= 10) ++digits;
    return 9 - digits;
}

timespec diff(const timespec& start, const timespec& end) {
    timespec d{end.tv_sec - start.tv_sec, end.tv_nsec - start.tv_nsec};
    if (d.tv_nsec < 0) {
        d.tv_sec -= 1;
        d.tv_nsec += 1000000000;
    }
    return d;
}

}  // namespace VantrelSDK
