#include "core/morph/LMorphDelta.h"

#include <gtest/gtest.h>

#include "core/mesh/Triangulation.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

/// Changes one vertex as a stroke does.
void Stroke(LMorphDelta& delta, int v, const LPoint3& d) {
    delta.AllockBack();
    delta.SetDetailsDirty(true);
    delta.DirtyVert(v);
    delta.DirtyVert(v);
    delta.OffsetVert(v, d);
    EXPECT_EQ(delta.CacheUndo(false), 1);
}

}  // namespace

TEST(MorphDelta, UndoGoesBackTenStrokes) {
    LMorphDelta delta(nullptr, LSubdivMesh(Triangulate(shapes::Cube())));
    for (int i = 1; i <= 11; ++i) Stroke(delta, 3, {1, 0, 0});
    for (int i = 10; i >= 1; --i) {
        EXPECT_TRUE(delta.Undo());
        EXPECT_EQ(delta.MorphVector(3), LPoint3(i, 0, 0));
    }
    EXPECT_FALSE(delta.Undo());
    EXPECT_EQ(delta.MorphVector(3), LPoint3(1, 0, 0));
}

TEST(MorphDelta, EmptyAndWholeRecords) {
    LMorphDelta delta(nullptr, LSubdivMesh(Triangulate(shapes::Cube())));
    Stroke(delta, 3, {1, 0, 0});
    delta.FakeUndo();
    EXPECT_FALSE(delta.Undo());
    EXPECT_EQ(delta.MorphVector(3), LPoint3(1, 0, 0));
    delta.CacheUndo(true);  // the level as it is, and the empty stroke
    delta.ClearVerts();
    EXPECT_FALSE(delta.Undo());
    EXPECT_TRUE(delta.Undo());
    EXPECT_EQ(delta.MorphVector(3), LPoint3(1, 0, 0));
}

TEST(MorphDelta, UpperLevelsFollowWhatChangedBelowAndKeepTheirDetail) {
    LSubdivMesh geom(Triangulate(shapes::Torus(8, 6)));
    LMorphDelta delta(nullptr, geom);
    for (int i = 0; i < 3; ++i) {
        geom.SubdivideAll_Loop(true, true);
        ASSERT_TRUE(delta.SubdivideLike(geom));
    }
    // Fine detail everywhere on the top.
    for (int v = 0; v < geom.GetNumVerts(); ++v) Stroke(delta, v, {0, 0, 0.001f * (1 + v % 7)});
    ASSERT_TRUE(delta.SetActiveSubdivLevel(1, true));
    EXPECT_FALSE(delta.Undo()) << "a change of level forgets the strokes";
    const LSubdivMesh before(*delta.GetOrigMesh());
    Stroke(delta, 5, {1, 2, 3});
    const LSubdivMesh stroked(*delta.GetOrigMesh());
    ASSERT_TRUE(delta.SetActiveSubdivLevel(3, true));
    const LSubdivMesh& after = *delta.GetOrigMesh();

    // The change alone, interpolated level by level, on top of what was there.
    LSubdivMesh change(geom);
    change.ClearAllVerts();
    change.SetVertByAbsIdx(5, {1, 2, 3});
    int followers = 0;
    for (int level = 2; level <= 3; ++level) {
        const ISubdivLayer* layer = geom.GetSubdivs().GetLayer(level);
        for (int v = layer->GetFirstVert(); v <= layer->GetLastVert(); ++v) {
            const auto [a, b] = layer->rule()->tables().parents[v - layer->GetFirstVert()];
            change.SetVertByAbsIdx(v,
                                   (change.GetVertByAbsIdx(a) + change.GetVertByAbsIdx(b)) * 0.5f);
        }
    }
    for (int v = 0; v < geom.GetNumLevelVerts(3); ++v) {
        const LPoint3 moved = change.GetVertByAbsIdx(v), old = before.GetVertByAbsIdx(v);
        if (moved == LPoint3::Zero) {
            ASSERT_EQ(after.GetVertByAbsIdx(v), old) << "untouched vertices keep their bits";
            continue;
        }
        ++followers;
        EXPECT_LT((after.GetVertByAbsIdx(v) - old - moved).Len(), 1e-6f);
        if (v < geom.GetNumLevelVerts(1)) {
            EXPECT_EQ(after.GetVertByAbsIdx(v), stroked.GetVertByAbsIdx(v));
        }
    }
    EXPECT_GT(followers, 20);
    // Up and down again without a stroke changes nothing.
    const LSubdivMesh still(after);
    for (const unsigned level : {0u, 2u, 1u, 3u}) delta.SetActiveSubdivLevel(level, true);
    for (int v = 0; v < geom.GetNumLevelVerts(3); ++v)
        ASSERT_EQ(after.GetVertByAbsIdx(v), still.GetVertByAbsIdx(v));
    EXPECT_FALSE(delta.SetActiveSubdivLevel(4, true));
}
