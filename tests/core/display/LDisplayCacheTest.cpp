#include "core/display/LDisplayCache.h"

#include <gtest/gtest.h>

#include "core/mesh/Triangulation.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LSubdivMesh.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

struct Scene {
    LSubdivMesh geom{Triangulate(shapes::Sphere(4))}, delta{geom};
    LThreadGroup workers{2};
    LDisplayCache cache{nullptr, &workers};

    Scene() {
        delta.ClearAllVerts();
        cache.Init(&geom, &delta);
        cache.CalcAll();
    }
};

}  // namespace

TEST(DisplayCache, EvaluatesPositionsAndNormals) {
    Scene s;
    for (int v = 0; v < s.cache.GetNumVerts(); ++v) {
        EXPECT_EQ(s.cache.GetVertex(v), s.geom.GetVert(v));
        EXPECT_NEAR(s.cache.GetVNormal(v).Len(), 1, 1e-6f);
    }
    for (int f = 0; f < s.cache.GetNumFaces(); ++f)
        EXPECT_EQ(s.cache.GetFNormal(f), s.geom.GetFaceNormal(f));
}

TEST(DisplayCache, MarksCountOnceAndIgnoreWhatIsOutOfRange) {
    Scene s;
    for (const int v : {3, 3, -1, s.cache.GetNumVerts()}) s.cache.SetVertChanged(v);
    for (const int f : {5, 5, -1, s.cache.GetNumFaces()}) s.cache.SetFaceChanged(f);
    EXPECT_EQ(s.cache.vcounter(), 1);
    EXPECT_EQ(s.cache.fcounter(), 1);
    s.cache.Clear(false);
    const std::vector<int> verts = {1, 2}, faces = {0};
    s.cache.SetChanged(faces, verts);
    s.cache.SetVertChanged(2);  // was marked in bulk
    s.cache.SetVertChanged(7);
    EXPECT_EQ(s.cache.vcounter(), 3);
}

TEST(DisplayCache, DirtyBoxesCoverWhereVerticesWereAndAre) {
    Scene s;
    LPoint3 min, max;
    EXPECT_FALSE(s.cache.GetDirtyBox(0, min, max));
    const LPoint3 from = s.geom.GetVert(0);
    s.delta.SetVert(0, {5, 6, 7});
    s.cache.SetVertsMoved(std::vector<int>{0});
    s.cache.CalcChanged(true);
    ASSERT_TRUE(s.cache.GetDirtyBox(0, min, max));
    EXPECT_LE(min.x, from.x);
    EXPECT_EQ(max, from + LPoint3(5, 6, 7));
    s.cache.Clear(false);  // no draw has used it: the box goes on growing
    EXPECT_TRUE(s.cache.GetDirtyBox(0, min, max));
    EXPECT_FALSE(s.cache.GetDirtyBox(1, min, max));
    s.cache.SetDirtyBoxDrawn();
    s.cache.Clear(false);
    EXPECT_FALSE(s.cache.GetDirtyBox(0, min, max));
    EXPECT_TRUE(s.cache.GetDirtyBox(1, min, max));
}

TEST(DisplayCache, FrozenNormalsStayUntilTheNextFreeze) {
    Scene s;
    const LPoint3 before = s.cache.GetVNormal(0);
    s.cache.CachePushPullNormas();
    s.delta.SetVert(0, {0.3f, 0.2f, 0});
    s.delta.SetVert(1, {0, -0.3f, 0.1f});
    const std::vector<int> moved = {0, 1};
    s.cache.SetVertsMoved(moved);
    s.cache.CalcChanged(true);
    EXPECT_EQ(s.cache.GetPushPullVNormal(0), before);
    s.cache.CachePushPullNormas();
    for (int v = 0; v < s.cache.GetNumVerts(); ++v)
        EXPECT_EQ(s.cache.GetPushPullVNormal(v), s.cache.GetVNormal(v));
}
