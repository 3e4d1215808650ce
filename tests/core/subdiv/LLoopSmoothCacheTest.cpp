#include "core/subdiv/LLoopSmoothCache.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/core/mesh/TestMeshes.h"

using namespace VantrelSDK;

namespace {

struct Neighbourhood {
    LAdjFaceList faces;
    LAdjVertList verts;

    explicit Neighbourhood(const TestMesh& mesh)
        : faces(mesh.faces, mesh.NumVerts()), verts(faces, mesh.faces) {}
};

}  // namespace

TEST(LLoopSmoothCache, AfterASplitItIsLoopsMaskAndWeightsSumToOne) {
    for (int n = 3; n <= 40; ++n) {
        // The hub is raised, so that half its height is left at the middles of its edges.
        TestMesh fan = Fan(n);
        for (int v = 0; v <= n; ++v) fan.verts[v].z = v == 0 ? 1 : 0.5f;
        const Neighbourhood near(fan);
        const LLoopSmoothCache cache(fan.verts.data(), n + 1, near.verts, nullptr);
        const double beta = (0.625 - std::pow(0.375 + 0.25 * std::cos(2 * M_PI / n), 2)) / n;
        EXPECT_NEAR(cache.GetVert(0).z, 1 - n * beta, 1e-6) << n;  // beta as in Loop's thesis

        for (LPoint3& p : fan.verts) p = {0.1f, -7, 3};
        EXPECT_TRUE(cache.GetVert(0).Equals(fan.verts[0], 1e-5f)) << n;
    }
    EXPECT_NEAR(LLoopSmoothCache::VertexWeight(6), 2, 1e-6);  // 3/8 and 1/8 for a split edge
}

TEST(LLoopSmoothCache, RegularSheetsStayAndOpenVerticesAreKept) {
    const TestMesh sheet = Grid(6, 5);
    const Neighbourhood near(sheet);
    const LEdgeOpenList edges(sheet.faces, sheet.NumVerts());
    const LVertOpenList open(sheet.NumVerts(), edges);
    std::vector<LPoint3> kept(sheet.verts.size()), moved(sheet.verts.size());
    LLoopSmoothCache(sheet.verts.data(), sheet.NumVerts(), near.verts, &open).Fill(kept.data());
    LLoopSmoothCache(sheet.verts.data(), sheet.NumVerts(), near.verts, nullptr).Fill(moved.data());
    for (int v = 0; v < sheet.NumVerts(); ++v) {
        EXPECT_TRUE(kept[v].Equals(sheet.verts[v], 1e-5f)) << v;
        EXPECT_EQ(moved[v].Equals(sheet.verts[v], 1e-2f), !open.IsVertOpen(v)) << v;
    }
}

TEST(LLoopSmoothCache, WithoutNeighboursAPositionStays) {
    const LPoint3 lonely[2] = {{1, 2, 3}, {4, 5, 6}};
    const LLoopSmoothCache cache(lonely, 2, LAdjVertList(), nullptr);
    EXPECT_EQ(cache.GetVert(1), lonely[1]);
    EXPECT_EQ(cache.GetVert(2), LPoint3::Zero);
    EXPECT_EQ(cache.GetVert(-1), LPoint3::Zero);
}
