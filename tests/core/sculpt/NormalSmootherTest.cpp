#include "core/sculpt/NormalSmoother.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "core/mesh/Triangulation.h"
#include "tests/core/math/SameBits.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

/// The rounds as they are told: one vertex after the other.
std::vector<LPoint3> SmoothedInTurn(std::vector<LPoint3> normals, const std::vector<int>& verts,
                                    const LAdjVertList& adjacency, int rounds) {
    for (int round = 0; round < rounds; ++round)
        for (const int v : verts) {
            LPoint3 sum = normals[v];
            const auto neighbours = adjacency.GetAdjVertsForVert(v);
            for (const int n : neighbours) sum += normals[n];
            normals[v] = sum / static_cast<float>(neighbours.size() + 1);
        }
    return normals;
}

}  // namespace

/// Over all shapes: none, some or all vertices, ascending and in any order.
TEST(NormalSmoother, WavesGiveTheBitsOfOneVertexAfterTheOther) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> part(-1, 1);
    std::vector<shapes::Shape> all = shapes::AllShapes();
    all.push_back({"sheet", 0, shapes::Grid(60, 40)});
    all.push_back({"ball", 0, shapes::Sphere(4)});
    NormalSmoother smoother;  // one for all: nothing is left of a former mesh
    for (const shapes::Shape& shape : all) {
        SCOPED_TRACE(shape.name);
        const LMesh mesh = Triangulate(shape.mesh);
        const LAdjVertList& adjacency = mesh.Topology()->AdjVerts();
        const int nverts = mesh.GetNumVerts();
        ASSERT_TRUE(smoother.Reset(nverts));
        std::vector<LPoint3> normals(nverts);
        for (LPoint3& n : normals) n = {part(random), part(random), part(random)};
        for (const int count : {0, nverts / 3, nverts}) {
            std::vector<int> verts(nverts);
            std::iota(verts.begin(), verts.end(), 0);
            std::shuffle(verts.begin(), verts.end(), random);
            verts.resize(count);
            for (const bool ascending : {false, true}) {
                if (ascending) std::sort(verts.begin(), verts.end());
                const LPoint3 untouched(7, 7, 7);
                std::vector<LPoint3> out(nverts, untouched);
                ASSERT_TRUE(smoother.Bind(verts, adjacency));
                smoother.Smooth(normals, 10, out.data());
                std::vector<LPoint3> expected(nverts, untouched);
                const auto inTurn = SmoothedInTurn(normals, verts, adjacency, 10);
                for (const int v : verts) expected[v] = inTurn[v];
                EXPECT_TRUE(SameBits(out, expected));
            }
        }
    }
}

TEST(NormalSmoother, PassesOverWhatIsNotThere) {
    const LMesh mesh = Triangulate(shapes::Cube());
    NormalSmoother smoother;
    ASSERT_TRUE(smoother.Bind(std::vector<int>{0, 1}, mesh.Topology()->AdjVerts()));
    smoother.Smooth({}, 3, nullptr);
    ASSERT_TRUE(smoother.Reset(mesh.GetNumVerts()));
    ASSERT_TRUE(smoother.Bind(std::vector<int>{-1, 2, 8}, mesh.Topology()->AdjVerts()));
    std::vector<LPoint3> normals(8, LPoint3(0, 0, 1)), out(8);
    smoother.Smooth(normals, 3, out.data());
    EXPECT_EQ(out[2], LPoint3(0, 0, 1));
    EXPECT_EQ(out[0], LPoint3::Zero);
}
