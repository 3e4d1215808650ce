#include "core/math/Geometry.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cfloat>

#include "tests/core/math/Generators.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

float Sum(const LPoint3& p) {
    return p.x + p.y + p.z;
}
LPoint3 Blend(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& w) {
    return a * w.x + b * w.y + c * w.z;
}

struct Hit {
    float t = -1;
    LPoint3 point, bary;
};

bool Hits(const LPoint3& a, const LPoint3& b, const LPoint3& c, const LPoint3& from,
          const LPoint3& dir, bool cull = false, Hit* out = nullptr) {
    Hit hit;
    const bool found = IntersectTri(a, b, c, from, dir, hit.t, hit.point, hit.bary, cull);
    if (out) *out = hit;
    return found;
}

}  // namespace

RC_GTEST_PROP(Rotation, RodriguesAndQuaternionAgreeAndKeepTheAxisPart, ()) {
    LPoint3 axis = UnitPoint();
    RC_PRE(axis.Len() > 0.1f);
    axis.Normalize();
    const LPoint3 v = UnitPoint();
    const float angle = 4 * Unit();
    LPoint3 a = v, b = v;
    RotateAroundVector(axis, angle, a);
    RotateAroundVectorQ(axis, angle, b);
    RC_ASSERT(a.Equals(b, 1e-5f));
    RC_ASSERT(std::abs(a % axis - v % axis) < 1e-5f);
    RC_ASSERT(std::abs(a.Len() - v.Len()) < 1e-5f);
}

TEST(Rotation, TurnsTheToldWay) {
    LPoint3 v{1, 0, 0};
    RotateAroundVector({0, 0, 1}, 1.5707964f, v);
    EXPECT_TRUE(v.Equals({0, -1, 0}, 1e-6f));
    LPoint2 p{3, 1};
    RotatePt({2, 1}, 1.5707964f, p);
    EXPECT_TRUE(p.Equals({2, 2}, 1e-6f));
}

RC_GTEST_PROP(BaryCoords, AllFormsFindTheWeightsOfAnInnerPoint, ()) {
    const LPoint3 up{0, 0, 3};
    const LPoint3 a = UnitPoint() + up, b = UnitPoint() + up, c = UnitPoint() + up;
    const auto flat = [](const LPoint3& q) { return LPoint2(q.x, q.y); };
    RC_PRE(std::abs((flat(b) - flat(a)) ^ (flat(c) - flat(a))) > 0.1f);
    RC_PRE(std::abs(a % (b ^ c)) > 0.3f);
    LPoint3 w = UnitPoint() + LPoint3(1.01f, 1.01f, 1.01f);
    w /= Sum(w);
    const LPoint3 p = Blend(a, b, c, w), normal = Normalized((b - a) ^ (c - a));
    RC_ASSERT(CalcBaryCoords(a, b, c, p).Equals(w, 1e-3f));
    RC_ASSERT(CalcBaryCoordsNCP(a, b, c, p + normal * 0.5f).Equals(w, 1e-3f));
    RC_ASSERT(CalcBaryCoords2D(a, b, c, p).Equals(w, 1e-3f));
    RC_ASSERT(CalcBaryCoords2D(flat(a), flat(b), flat(c), flat(p)).Equals(w, 1e-3f));
}

// Against the plane and the areas in long double, wherever rounding can't decide.
RC_GTEST_PROP(IntersectTri, FindsWhatThePlaneAndTheAreasFind, ()) {
    LPoint3 a = UnitPoint(), b = UnitPoint(), c = UnitPoint();
    // Far from the origin, about it, and in a plane through it.
    const LPoint3 offset = *rc::gen::element(LPoint3(5, -7, 9), LPoint3::Zero, -a);
    a += offset, b += offset, c += offset;
    const LPoint3 from = UnitPoint() * 3.0f + offset;
    // Aimed at the triangle's plane, within it about as often as beside it, or away from there.
    const float u = 0.4f + 0.6f * Unit(), v = (1 - u) * (0.5f + 0.7f * Unit());
    const LPoint3 dir =
        (Blend(a, b, c, {u, v, 1 - u - v}) - from) * (Unit() > -0.8f ? 0.7f : -2.0f);
    const bool cull = *rc::gen::arbitrary<bool>();

    using Real = long double;
    const auto cross = [](const LPoint3& o, const LPoint3& p, const LPoint3& q) {
        const Real ux = Real(p.x) - o.x, uy = Real(p.y) - o.y, uz = Real(p.z) - o.z;
        const Real vx = Real(q.x) - o.x, vy = Real(q.y) - o.y, vz = Real(q.z) - o.z;
        return std::array<Real, 3>{uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
    };
    const auto dot = [](const std::array<Real, 3>& p, const LPoint3& q) {
        return p[0] * q.x + p[1] * q.y + p[2] * q.z;
    };
    const auto normal = cross(a, b, c);
    const Real denom = dot(normal, dir);
    RC_PRE(std::abs(denom) > 1e-3L);
    const Real t = (dot(normal, a) - dot(normal, from)) / denom;
    RC_PRE(std::abs(t) > 1e-4L);
    bool expected = t > 0 && !(cull && denom > 0);
    const std::array<Real, 3> weights = {dot(cross(from, b, c), dir) / denom,
                                         dot(cross(from, c, a), dir) / denom,
                                         dot(cross(from, a, b), dir) / denom};
    for (const Real w : weights) {
        RC_PRE(std::abs(w) > 1e-4L);
        expected = expected && w > 0;
    }

    Hit hit;
    RC_ASSERT(Hits(a, b, c, from, dir, cull, &hit) == expected);
    if (!expected) return;
    RC_ASSERT(std::abs(hit.t - float(t)) < 1e-3f);
    RC_ASSERT(hit.point == from + dir * hit.t);
    RC_ASSERT(hit.bary.Equals({float(weights[0]), float(weights[1]), float(weights[2])}, 1e-3f));
    RC_ASSERT(std::abs(Sum(hit.bary) - 1) < 1e-5f);
}

// A sphere seen from inside has no gaps, not even for rays aimed at its vertices and edges.
TEST(IntersectTri, ClosedMeshesHaveNoCracks) {
    const PolyMesh sphere = shapes::Sphere(3);
    const int corners = static_cast<int>(sphere.cornerVerts.size());
    const auto corner = [&](int c) { return sphere.positions[sphere.cornerVerts[c]]; };
    std::vector<LPoint3> targets = sphere.positions;
    for (int c = 0; c < corners; ++c)
        targets.push_back((corner(c) + corner(c % 3 < 2 ? c + 1 : c - 2)) * 0.5f);
    for (const LPoint3& from : {LPoint3(), LPoint3(0.27f, 0.29f, -0.1f)})
        for (const LPoint3& target : targets) {
            int hits = 0;
            for (int c = 0; c < corners; c += 3) {
                Hit hit;
                if (!Hits(corner(c), corner(c + 1), corner(c + 2), from, target - from, false,
                          &hit))
                    continue;
                ++hits;
                EXPECT_NEAR(hit.t, 1, 1e-4f);
                EXPECT_GE(std::min({hit.bary.x, hit.bary.y, hit.bary.z}), 0);
                EXPECT_LE(std::max({hit.bary.x, hit.bary.y, hit.bary.z}), 1);
            }
            EXPECT_GE(hits, 1) << target.x << " " << target.y << " " << target.z;
        }
}

TEST(IntersectSphere, GivesBothPiercingsUnlessBehind) {
    float t0 = 7, t1 = 7;
    EXPECT_FALSE(IntersectSphere({0, 0, -10}, 2, {0, 0, 0}, {0, 0, 1}, t0, t1));
    EXPECT_FALSE(IntersectSphere({3, 0, 10}, 2, {0, 0, 0}, {0, 0, 1}, t0, t1));
    EXPECT_FALSE(IntersectSphere({0, 0, 0}, 2, {0, 0, 0}, {0, 0, 0}, t0, t1));
    EXPECT_EQ(t0 + t1, 14);
    ASSERT_TRUE(IntersectSphere({0, 0, 10}, 2, {0, 0, 0}, {0, 0, 2}, t0, t1));
    EXPECT_EQ(LPoint2(t0, t1), LPoint2(4, 6));
    ASSERT_TRUE(IntersectSphere({0, 0, 1}, 2, {0, 0, 0}, {0, 0, 1}, t0, t1));
    EXPECT_EQ(LPoint2(t0, t1), LPoint2(-1, 3));
}
