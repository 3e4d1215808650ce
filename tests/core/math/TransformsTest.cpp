#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "core/math/LColor.h"
#include "core/math/LMatrix3.h"
#include "core/math/LPlane.h"
#include "core/math/LQuat.h"
#include "core/math/LVector.h"
#include "tests/core/math/Generators.h"

using namespace VantrelSDK;

namespace {

LMatrix3 AnyMatrix() {
    return {{UnitPoint(), UnitPoint(), UnitPoint(), UnitPoint()}, false};
}

LPoint3 Turn(const LQuat& q, const LPoint3& v) {
    return (q * LQuat(0, v.x, v.y, v.z) * q.GetInversed()).v;
}

}  // namespace

RC_GTEST_PROP(LMatrix3, ProductAppliesTheLeftFactorFirstAndInversesUndo, ()) {
    const LMatrix3 a = AnyMatrix(), b = AnyMatrix();
    const LPoint3 p = UnitPoint();
    RC_ASSERT((a * b).TransfromPoint(p).Equals(b.TransfromPoint(a.TransfromPoint(p)), 1e-5f));
    RC_ASSERT((a * b).TransfromVector(p).Equals(b.TransfromVector(a.TransfromVector(p)), 1e-5f));
    RC_PRE(std::abs(det4x4(a)) > 0.1f);
    RC_ASSERT((a * GetInverse(a)).Equals(LMatrix3::Identity, 1e-4f));
    RC_ASSERT((tminverse(a) * a).Equals(LMatrix3::Identity, 1e-4f));
}

RC_GTEST_PROP(LMatrix3, RotationsAgreeWithTheQuaternions, ()) {
    LPoint3 axis = UnitPoint();
    RC_PRE(axis.Len() > 0.1f);
    axis.Normalize();
    const LPoint3 v = UnitPoint();
    const float x = 3 * Unit(), y = 3 * Unit(), z = 3 * Unit();
    LMatrix3 about, euler;
    about.SetRotation(axis, x);
    RC_ASSERT(about.TransfromPoint(v).Equals(Turn(LQuat(axis, x), v), 1e-5f));
    euler[3] = v;  // turned with the axes
    euler.RotateX(x), euler.RotateY(y), euler.RotateZ(z);
    const LPoint3 turned = Turn(LQuat(x, y, z), v);
    RC_ASSERT(euler.TransfromVector(v).Equals(turned, 1e-5f) && euler[3].Equals(turned, 1e-5f));
    // Right-handed about z.
    LMatrix3 quarter;
    quarter.RotateZ(1.5707964f);
    RC_ASSERT(quarter.TransfromVector(v).Equals({-v.y, v.x, v.z}, 1e-6f));
}

TEST(LMatrix3, SingularMatricesHaveAFiniteInverse) {
    const LMatrix3 flat{{{1, 2, 3}, {2, 4, 6}, {0, 1, 0}, {1, 1, 1}}, false};
    const LMatrix3 inverse = GetInverse(flat);
    EXPECT_EQ(det4x4(flat), 0);
    EXPECT_GT(inverse[0].Len(), 1e7f);
    for (int row = 0; row < 3; ++row) EXPECT_EQ(inverse[row], adjoint(flat)[row] * 1e7f);
    for (const LPoint3& row : inverse.m) EXPECT_TRUE(std::isfinite(row.x + row.y + row.z));
    EXPECT_EQ(tminverse(flat), LMatrix3::Identity);
}

TEST(LMatrix3, DegeneratedFramesOnlyMovePointsAndSpread) {
    LMatrix3 d = LMatrix3::Degenerated;
    d[0] = {9, 9, 9};
    d[3] = {1, 2, 3};
    EXPECT_EQ(d.TransfromPoint({1, 1, 1}), LPoint3(2, 3, 4));
    EXPECT_EQ(d.TransfromVector({1, 1, 1}), LPoint3(1, 1, 1));
    EXPECT_TRUE(d.Equals(LMatrix3::Degenerated, 0));
    EXPECT_FALSE(d == LMatrix3::Degenerated);
    for (const LMatrix3& m : {d * LMatrix3::Identity, LMatrix3::Identity + d, d - d})
        EXPECT_EQ(m, LMatrix3::Degenerated);
    LMatrix3 inverted = d;
    inverted.Invert();
    EXPECT_EQ(inverted, d);
}

TEST(LQuatAndLPlane, WithoutLengthHaveNoReciprocal) {
    EXPECT_NEAR(LQuat(1, 2, 3, 4).GetNormalized().GetLen(), 1, 1e-6f);
    EXPECT_EQ(LQuat(0, 0, 0, 0).GetNormalized().GetLen(), 0);
    EXPECT_EQ(LQuat(0, 0, 0, 0).GetInversed().GetLen(), 0);
    const LPlane plane({0, 0, 2}, {4, 0, 2}, {0, 4, 2});
    EXPECT_TRUE(plane.IsAbove({1, 1, 2.1f}) && !plane.IsAbove({7, 7, 2}));
    EXPECT_EQ((plane.normal % LPoint3(3, 3, 5) + plane.d) * plane.reciprocal, 3);
    EXPECT_EQ(LPlane(LPoint3::Zero, LPoint3::Zero).reciprocal, 0);
}
