#include "core/math/Geometry.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cfloat>

#include "tests/core/math/Generators.h"
#include "tests/core/mesh/TestMeshes.h"

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

TEST(BaryCoords, TrianglesWithoutAreaGiveATripleThatSumsToATenth) {
    const LPoint3 a{1, 2, 3}, b{4, 5, 7};
    EXPECT_EQ(CalcBaryCoords(a, b, a, a), kNoBaryCoords);
    EXPECT_EQ(CalcBaryCoords(a, b, a * 2.0f, a), kNoBaryCoords);  // its plane passes the origin
    EXPECT_EQ(CalcBaryCoords2D(a, a, b, b), kNoBaryCoords);
    EXPECT_EQ(CalcBaryCoords2D(LPoint2(0, 0), {1, 1}, {2, 2}, {1, 1}), kNoBaryCoords);
}

TEST(BaryCoords, AreasHaveASignInTwoDimensionsOnly) {
    EXPECT_EQ(CalcBaryCoords2D(LPoint2(0, 0), {1, 0}, {0, 1}, {1, 1}), LPoint3(-1, 1, 1));
    EXPECT_EQ(CalcBaryCoords2D(LPoint3(0, 0, 0), {1, 0, 0}, {0, 1, 0}, {1, 1, 0}).x, 1);
    const LPoint2I far{INT32_MIN, INT32_MIN}, right{INT32_MAX, INT32_MIN}, up{INT32_MIN, INT32_MAX};
    EXPECT_EQ(CalcBaryCoords2D(far, right, up, {INT32_MAX, INT32_MAX}), LPoint3(-1, 1, 1));
}

// Against the plane and the areas in long double, wherever rounding can't decide.
RC_GTEST_PROP(IntersectTri, FindsWhatThePlaneAndTheAreasFind, ()) {
    const LPoint3 offset = *rc::gen::arbitrary<bool>() ? LPoint3(5, -7, 9) : LPoint3::Zero;
    const LPoint3 a = UnitPoint() + offset, b = UnitPoint() + offset, c = UnitPoint() + offset;
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

TEST(IntersectTri, PlanesThroughTheOriginAreAsGoodAsOthers) {
    for (float x = 0; x <= 4; x += 0.5f)
        for (float y = 0; y <= 4; y += 0.5f) {
            const bool inside = x >= 1 && y >= 1 && x + y <= 4;
            Hit hit;
            EXPECT_EQ(Hits({1, 1, 0}, {3, 1, 0}, {1, 3, 0}, {x, y, 2}, {0, 0, -1}), inside);
            // The same, leaning: the plane x = z.
            EXPECT_EQ(Hits({1, 1, 1}, {3, 1, 3}, {1, 3, 1}, {x, y, 9}, {0, 0, -1}, false, &hit),
                      inside);
            if (!inside) continue;
            EXPECT_EQ(hit.bary, LPoint3((4 - x - y) / 2, (x - 1) / 2, (y - 1) / 2));
        }
}

TEST(IntersectTri, MissesLeaveTheResultsAlone) {
    const LPoint3 a{0, 0, 0}, b{1, 0, 0}, c{0, 1, 0}, above{0.2f, 0.2f, 1}, down{0, 0, -1};
    Hit hit;
    EXPECT_FALSE(Hits(a, b, c, above, {0, 0, 1}, false, &hit));  // behind the origin
    EXPECT_EQ(hit.t, -1);
    EXPECT_FALSE(Hits(a, b, c, {-1, 0.2f, 0}, {1, 0, 0}));           // within the plane
    EXPECT_FALSE(Hits(a, b, c, above, {0, 0, 0}));                   // no direction
    EXPECT_FALSE(Hits(a, {0.2f, 0.2f, 0}, {1, 1, 0}, above, down));  // a line, met exactly
    EXPECT_FALSE(Hits(a, {NAN, 0, 0}, c, above, down));
    EXPECT_FALSE(Hits(a, b, c, {0.2f, 0.2f, FLT_MAX}, {0, 0, -FLT_MIN}));  // t past all floats
    EXPECT_TRUE(Hits(a, b, c, above, down, true));
    EXPECT_FALSE(Hits(a, c, b, above, down, true));
    EXPECT_TRUE(Hits(a, b, c, {0.2f, 0.2f, 0}, down));  // starts on the face
}

// A sphere seen from inside has no gaps, not even for rays aimed at its vertices and edges.
TEST(IntersectTri, ClosedMeshesHaveNoCracks) {
    const TestMesh sphere = Sphere(24, 17, LPoint3(0.1f, -0.7f, 0.3f));
    const auto corner = [&](const LFace& f, int k) { return sphere.verts[f.v[k % 3]]; };
    std::vector<LPoint3> targets = sphere.verts;
    for (const LFace& f : sphere.faces)
        for (int k = 0; k < 3; ++k) targets.push_back((corner(f, k) + corner(f, k + 1)) * 0.5f);

    for (const LPoint3& from : {LPoint3(0.1f, -0.7f, 0.3f), LPoint3(0.37f, -0.41f, 0.2f)})
        for (const LPoint3& target : targets) {
            int hits = 0;
            for (const LFace& f : sphere.faces) {
                Hit hit;
                if (!Hits(corner(f, 0), corner(f, 1), corner(f, 2), from, target - from, false,
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

TEST(Helpers, FrameNumbersPadToNineDigitsAndTimesBorrowASecond) {
    for (const int n : {0, 7, 10, 99, 123456789, INT32_MAX, -42})
        EXPECT_EQ(numZeros(n), 9 - int(std::to_string(std::abs(n)).size())) << n;
    const timespec d = diff({5, 900000000}, {7, 100000000});
    EXPECT_EQ(d.tv_sec, 1);
    EXPECT_EQ(d.tv_nsec, 200000000);
}
