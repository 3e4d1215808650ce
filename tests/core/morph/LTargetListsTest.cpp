#include "core/morph/LTargetLists.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "core/morph/LNeutral.h"
#include "core/morph/MorphCallbacks.h"
#include "tests/core/subdiv/Levels.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

TEST(TargetLists, StandardTargetsComeFirstAndStay) {
    LTargetLists lists(nullptr);
    EXPECT_EQ(lists.GetMorph(0), nullptr);
    lists.InitMorphs(12);
    ASSERT_EQ(lists.GetNumStdMorphs(), 17);
    EXPECT_EQ(lists.GetMorph(12)->GetName(), "PP_BB");
    EXPECT_EQ(lists.GetNeutral()->GetName(), "NEUTRAL");
    EXPECT_EQ(LTargetLists::GetDefMorphName(16), "RR");
    EXPECT_EQ(LTargetLists::GetDefMorphName(19), "EXT_2");
    EXPECT_EQ(lists.AddMorph()->GetName(), "ext 0");
    EXPECT_EQ(lists.AddMorph()->GetName(), "ext 1");
    EXPECT_EQ(lists.FindMorph("ext 1"), 18);
    EXPECT_TRUE(lists.SetMorphName(18, "grin"));
    EXPECT_EQ(lists.FindMorph("ext 1"), -1);
    for (const int bad : {-1, 19, INT_MAX}) {
        EXPECT_EQ(lists.GetMorph(bad), nullptr);
        EXPECT_FALSE(lists.SetMorph(std::make_unique<LMorphTarget>(nullptr, "", 1), bad));
        EXPECT_FALSE(lists.SetMorphName(bad, "") || lists.DelMorph(bad));
    }
    EXPECT_FALSE(lists.DelMorph(3)) << "standard";
    EXPECT_TRUE(lists.DelMorph(17));
    EXPECT_EQ(lists.GetMorph(17)->GetName(), "grin");
    for (int i = 0; i < 19; ++i)
        EXPECT_TRUE(
            lists.AddMorphGroup(0, std::make_unique<LMorphGroup>(nullptr, std::to_string(i), 12)));
    EXPECT_FALSE(lists.AddMorphGroup(std::make_unique<LMorphGroup>(nullptr, "", 12)));
    EXPECT_EQ(lists.GetMorphGroup(0)->GetTarget(3)->GetName(), "18_3");
    EXPECT_TRUE(lists.RemoveMorphGroup(0));
    EXPECT_EQ(lists.GetMorphGroup(0)->GetName(), "17");
    EXPECT_EQ(lists.AllTargets().size(), 1 + 18 + 4 * 18u);
}

TEST(TargetLists, ATargetIsCopiedWhole) {
    LFlexorTarget target(nullptr, "smile", 2, 9);
    target.SetBackColor({1, 0.5f, 0});
    target.AddJoint(target.newJoint());
    target.GetJoint(0)->nodename = "jaw";
    SparseColors colors;
    EXPECT_TRUE(colors.Append(1, {1, 0, 0, 1}));
    EXPECT_FALSE(colors.Append(1, {1, 0, 0, 1})) << "only forward";
    target.SetColors(colors);
    const LFlexorTarget copy(target);
    EXPECT_EQ(copy.GetUniqId(), 9);
    EXPECT_FALSE(copy.IsDefBack());
    EXPECT_NE(copy.GetJoint(0), target.GetJoint(0));
    EXPECT_EQ(copy.GetJoint(0)->nodename, "jaw");
    EXPECT_EQ(copy.MorphColor(1), LAColor(1, 0, 0, 1));
    EXPECT_EQ(copy.MorphColor(0), LAColor());
    target.Clear();
    EXPECT_FALSE(target.HasRGBA());
}

TEST(Neutral, StandsInForItsInput) {
    LNeutral neutral;
    LMesh input(2, 1), moved(2, 1), shape(2, 1);
    input.SetVert(0, {1, 0, 0});
    moved.SetVert(0, {1, 0, 5});
    EXPECT_EQ(neutral.Evaluate(input, false).GetVert(0), LPoint3(1, 0, 0)) << "no shape yet";
    shape.SetVert(0, {4, 0, 0});
    neutral.mesh = std::make_unique<LMesh>(shape);
    EXPECT_EQ(neutral.Evaluate(input, false).GetVert(0), LPoint3(4, 0, 0));
    EXPECT_EQ(neutral.Evaluate(moved, true).GetVert(0), LPoint3(4, 0, 5)) << "the tweak stays";
    EXPECT_EQ(neutral.Evaluate(LMesh(3, 1), true).GetNumVerts(), 3);
}

// Each callback against a loop over the vertices.
TEST(MorphCallbacks, DoWhatALoopWouldDo) {
    const LSubdivMesh geom = Chain(shapes::Torus(8, 6), "qq");
    const int verts0 = geom.GetNumLevelVerts(0), verts1 = geom.GetNumLevelVerts(1),
              all = geom.GetNumLevelVerts(2);
    LSubdivMesh offsets(geom);
    for (int v = 0; v < all; ++v)
        offsets.SetVertByAbsIdx(v, v % 3 ? LPoint3(v, 1, -v) : LPoint3::Zero);
    LMorphTarget target(nullptr, "t", verts0);
    target.CopyFromMesh(&offsets);
    SparseOffsets proxy;
    for (int v = 0; v < verts0; ++v) proxy.Append(v, {0, 0, 7});
    target.SetGeom(target.geom(), proxy);

    const auto check = [&](const char* what, auto make, int limit, float weight, bool clears,
                           bool proxied = false) {
        LSubdivMesh mesh(geom);
        mesh.SetActiveLevel(1);
        auto callback = make(&mesh);
        target.Traverse(&callback);
        for (int v = 0; v < all; ++v) {
            const LPoint3 offset = proxied ? LPoint3(0, 0, 7) : offsets.GetVertByAbsIdx(v);
            const LPoint3 before = clears ? LPoint3::Zero : geom.GetVertByAbsIdx(v);
            ASSERT_EQ(mesh.GetVertByAbsIdx(v), v < limit ? before + offset * weight : before)
                << what << v;
        }
    };
    check(
        "apply", [](auto* m) { return ApplyToMeshCallback(m); }, verts1, 1, false);
    check(
        "mult", [](auto* m) { return MultAndApplyToMeshClallback(m, 3); }, verts1, 3, false);
    check(
        "substruct", [](auto* m) { return SubstructDeltaCallback(m); }, verts1, -1, false);
    check(
        "copy", [](auto* m) { return CopyToSubdivMeshCallback(m); }, all, 1, true);
    check(
        "copy levels", [](auto* m) { return CopyToSubdivMeshLvlsCallback(m, 2); }, verts1, 1, true);
    check(
        "copy proxy", [](auto* m) { return CopyToSubdivMeshProxyCallback(m, 1); }, verts0, 1, true,
        true);
    check(
        "proxy at 2", [](auto* m) { return ApplyToSudivMeshProxyCallback(m, 2); }, verts1, 1,
        false);
    check(
        "past the top", [](auto* m) { return ApplyToSudivMeshLvlsCallback(m, 9); }, all, 1, false);
    check(
        "mult levels", [](auto* m) { return MultAndApplyToSudivMeshLvlsCallback(m, 2, 1); }, verts0,
        2, false);
    check(
        "mult proxy", [](auto* m) { return MultAndApplyToSudivMeshProxyCallback(m, 2, 1); }, verts0,
        2, false, true);
    check(
        "use proxy", [](auto* m) { return ApplyToSubdivMeshProxyCallback(m, true); }, verts0, 1,
        false, true);

    // One by one as all at once, and to a limit.
    struct Seen : NodeCallback {
        bool proc(int vertex, LMorphTarget*) override { return last = vertex, false; }
        int last = -1;
    } seen;
    target.Traverse(&seen, true, verts1);
    EXPECT_EQ(seen.last, (verts1 - 1) % 3 ? verts1 - 1 : verts1 - 2);
    target.Traverse(&seen, true, -1);
    EXPECT_GE(seen.last, all - 2);
    std::vector<char> tags(verts0);
    VertTagClallback tag(tags.data(), verts0);
    target.Traverse(&tag);
    for (int v = 0; v < verts0; ++v) EXPECT_EQ(tags[v], v % 3 != 0);
    EXPECT_TRUE(tag.HasTagged());
}
