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

const LPoint3 kAxes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

}  // namespace

RC_GTEST_PROP(LMatrix3, ProductAppliesTheLeftFactorFirst, ()) {
    const LMatrix3 a = AnyMatrix(), b = AnyMatrix();
    const LPoint3 p = UnitPoint();
    RC_ASSERT((a * b).TransfromPoint(p).Equals(b.TransfromPoint(a.TransfromPoint(p)), 1e-5f));
    RC_ASSERT((a * b).TransfromVector(p).Equals(b.TransfromVector(a.TransfromVector(p)), 1e-5f));
}

RC_GTEST_PROP(LMatrix3, InversesUndo, ()) {
    const LMatrix3 m = AnyMatrix();
    RC_PRE(std::abs(det4x4(m)) > 0.1f);
    RC_ASSERT((m * GetInverse(m)).Equals(LMatrix3::Identity, 1e-4f));
    RC_ASSERT((tminverse(m) * m).Equals(LMatrix3::Identity, 1e-4f));
}

RC_GTEST_PROP(LMatrix3, RotationsAgreeWithTheQuaternionAndInverse, ()) {
    LPoint3 axis = UnitPoint();
    RC_PRE(axis.Len() > 0.1f);
    axis.Normalize();
    const float angle = 3 * Unit();
    const LPoint3 v = UnitPoint();
    LMatrix3 m;
    m.SetRotation(axis, angle);
    const LQuat q = LQuat(axis, angle);
    RC_ASSERT(m.TransfromPoint(v).Equals((q * LQuat(0, v.x, v.y, v.z) * q.GetInversed()).v, 1e-5f));
}

TEST(LMatrix3, RotatesAboutCoordinateAxesAsSetRotationDoes) {
    LMatrix3 moved;
    moved[3] = {1, 2, 3};
    for (int axis = 0; axis < 3; ++axis) {
        LMatrix3 rotation, m = moved;
        rotation.SetRotation(kAxes[axis], 0.7f);
        axis == 0 ? m.RotateX(0.7f) : axis == 1 ? m.RotateY(0.7f) : m.RotateZ(0.7f);
        EXPECT_TRUE(m.Equals(moved * rotation, 1e-6f)) << axis;
        EXPECT_TRUE(rotation.TransfromVector(kAxes[(axis + 1) % 3])
                        .Equals(kAxes[(axis + 1) % 3] * std::cos(0.7f) +
                                    kAxes[(axis + 2) % 3] * std::sin(0.7f),
                                1e-6f));
    }
    moved.SetRotation({0, 0, 1}, 0);
    EXPECT_EQ(moved, LMatrix3::Identity);
}

TEST(LMatrix3, SingularMatricesHaveAFiniteInverse) {
    LMatrix3 flat{{{1, 2, 3}, {2, 4, 6}, {0, 1, 0}, {1, 1, 1}}, false};
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
    EXPECT_EQ(d * LMatrix3::Identity, LMatrix3::Degenerated);
    EXPECT_EQ(LMatrix3::Identity + d, LMatrix3::Degenerated);
    EXPECT_EQ(LMatrix3::Identity - d, LMatrix3::Degenerated);
    LMatrix3 inverted = d;
    inverted.Invert();
    EXPECT_EQ(inverted, d);
}

TEST(LQuat, EulerAnglesTurnAboutXThenYThenZ) {
    LMatrix3 m;
    m.RotateX(0.3f), m.RotateY(0.5f), m.RotateZ(-0.8f);
    const LQuat q(0.3f, 0.5f, -0.8f);
    for (const LPoint3& v : kAxes)
        EXPECT_TRUE(m.TransfromVector(v).Equals((q * LQuat(0, v.x, v.y, v.z) * q.GetConjugated()).v,
                                                1e-6f));
}

TEST(LQuat, ReciprocalAndUnitLength) {
    const LQuat q(1, 2, 3, 4), one = q * q.GetInversed();
    EXPECT_NEAR(one.w, 1, 1e-6f);
    EXPECT_NEAR(one.v.Len(), 0, 1e-6f);
    EXPECT_NEAR(q.GetNormalized().GetLen(), 1, 1e-6f);
    EXPECT_EQ(LQuat(0, 0, 0, 0).GetNormalized().GetLen(), 0);
    EXPECT_EQ(LQuat(0, 0, 0, 0).GetInversed().GetLen(), 0);
}

TEST(LPlane, SeparatesAndMeasures) {
    const LPlane plane({0, 0, 2}, {4, 0, 2}, {0, 4, 2});
    EXPECT_TRUE(plane.IsAbove({1, 1, 2.1f}));
    EXPECT_FALSE(plane.IsAbove({7, 7, 2}));
    EXPECT_FALSE(plane.IsAbove({1, 1, 1.9f}));
    EXPECT_EQ((plane.normal % LPoint3(3, 3, 5) + plane.d) * plane.reciprocal, 3);
    EXPECT_EQ(LPlane(LPoint3::Zero, LPoint3::Zero).reciprocal, 0);
}

TEST(LColor, LimitsFlipsAndInverts) {
    LColor c(-0.25f, 0.5f, 1.5f);
    LColor clamped = c, high = c, low = c, pos = c, inverted = c;
    clamped.ClampMinMax(), high.ClampMax(), low.ClampMin(), pos.MakePos(), inverted.Invert();
    EXPECT_EQ(clamped, LColor(0, 0.5f, 1));
    EXPECT_EQ(high, LColor(-0.25f, 0.5f, 1));
    EXPECT_EQ(low, LColor(0, 0.5f, 1.5f));
    EXPECT_EQ(pos, LColor(0.25f, 0.5f, 1.5f));
    EXPECT_EQ(inverted, LColor(1.25f, 0.5f, -0.5f));
    LAColor a(2, -1, 0.5f, 3);
    EXPECT_FLOAT_EQ(a.Intensivity(), 0.5f);
    a.ClampMinMax();
    EXPECT_EQ(a, LAColor(1, 0, 0.5f, 1));
    EXPECT_EQ((LAColor::White - LAColor::Transp) * 2.0f / 4.0f, LAColor(0.5f, 0.5f, 0.5f, 0));
}
