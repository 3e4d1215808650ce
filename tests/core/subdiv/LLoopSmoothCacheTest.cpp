#include "core/subdiv/LLoopSmoothCache.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/mesh/Triangulation.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

TEST(LLoopSmoothCache, AfterASplitItIsLoopsMaskAndWeightsSumToOne) {
    for (int n = 3; n <= 40; ++n) {
        // The hub is raised, so that half its height is left at the middles of its edges.
        PolyMesh fan = shapes::Fan(n);
        for (int v = 0; v <= n; ++v) fan.positions[v].z = v == 0 ? 1 : 0.5f;
        const LMesh mesh = Triangulate(fan);
        const LAdjVertList& near = mesh.Topology()->AdjVerts();
        const LLoopSmoothCache cache(fan.positions.data(), n + 1, near, nullptr);
        const double beta = (0.625 - std::pow(0.375 + 0.25 * std::cos(2 * M_PI / n), 2)) / n;
        EXPECT_NEAR(cache.GetVert(0).z, 1 - n * beta, 1e-6) << n;  // beta as in Loop's thesis

        for (LPoint3& p : fan.positions) p = {0.1f, -7, 3};
        EXPECT_TRUE(cache.GetVert(0).Equals(fan.positions[0], 1e-5f)) << n;
    }
    EXPECT_NEAR(LLoopSmoothCache::VertexWeight(6), 2, 1e-6);  // 3/8 and 1/8 for a split edge
}

TEST(LLoopSmoothCache, WithoutNeighboursAPositionStays) {
    const LPoint3 lonely[2] = {{1, 2, 3}, {4, 5, 6}};
    const LLoopSmoothCache cache(lonely, 2, LAdjVertList(), nullptr);
    EXPECT_EQ(cache.GetVert(1), lonely[1]);
    EXPECT_EQ(cache.GetVert(2), LPoint3::Zero);
    EXPECT_EQ(cache.GetVert(-1), LPoint3::Zero);
}
