#include "core/subdiv/LSubdivMesh.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/core/subdiv/Levels.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

TEST(SubdivMesh, LoopLevelsKeepTheNumberingRules) {
    for (const shapes::Shape& shape : shapes::ShapesWithFaces()) {
        SCOPED_TRACE(shape.name);
        LSubdivMesh mesh(Triangulate(shape.mesh));
        for (int level = 1; level <= 3; ++level) {
            const auto below = mesh.GetTopLevelCopy();
            ASSERT_TRUE(mesh.SubdivideAll_Loop(false, true));
            EXPECT_EQ(mesh.GetActiveLevel(), level);
            EXPECT_EQ(mesh.GetNumFaces(), 4 * below->GetNumFaces());
            const ISubdivLayer* layer = mesh.GetSubdivs().GetTop();
            for (int f = 0; f < mesh.GetNumFaces(); ++f) {
                const LFace face = mesh.GetFace(f), parent = below->GetFace(f / 4);
                EXPECT_EQ(face.id, layer->RemapFaceFromLocal(f));
                EXPECT_EQ(layer->GetParentFaceFromLocal(f), layer->GetFirstParentFace() + f / 4);
                const int k = f % 4;
                if (k == 3) {
                    EXPECT_EQ(face.flags, 0);
                    continue;
                }
                // A corner child: it keeps its corner and takes half of the two edges there.
                EXPECT_EQ(face.v[0], parent.v[k]);
                EXPECT_EQ(face.IsEdgeVisible(0), parent.IsEdgeVisible(k));
                EXPECT_EQ(face.IsEdgeVisible(2), parent.IsEdgeVisible((k + 2) % 3));
                EXPECT_FALSE(face.IsEdgeVisible(1));
                const LPoint3 middle =
                    (mesh.GetVert(parent.v[k]) + mesh.GetVert(parent.v[(k + 1) % 3])) * 0.5f;
                EXPECT_EQ(mesh.GetVert(face.v[1]), middle);
            }
        }
    }
}

TEST(SubdivMesh, SmoothingIsLoopsMaskOnAllVerticesButOpenOnes) {
    for (const bool protect : {false, true}) {
        LSubdivMesh plain(Triangulate(shapes::Grid(5, 4)));
        for (int v = 0; v < plain.GetNumVerts(); ++v)
            plain.OffsetVert(v, {0, 0, std::sin(7.0f * v)});
        LSubdivMesh smooth(plain);
        plain.SubdivideAll_Loop(false, protect);
        smooth.SubdivideAll_Loop(true, protect);
        const LMeshTopology& topology = *plain.GetLevelTopology(1);
        std::map<std::pair<int, int>, int> sides;
        for (const LFace& face : topology.Faces())
            for (int e = 0; e < 3; ++e) ++sides[std::minmax(face.v[e], face.v[(e + 1) % 3])];
        std::vector<bool> open(plain.GetNumVerts());
        for (const auto& [edge, count] : sides)
            if (count == 1) open[edge.first] = open[edge.second] = true;
        for (int v = 0; v < plain.GetNumVerts(); ++v) {
            const auto neighbours = topology.AdjVerts().GetAdjVertsForVert(v);
            const double n = neighbours.size();
            const double c = 3 + 2 * std::cos(2 * M_PI / n), alpha = 1.25 - c * c / 32;
            const double w = (1 - alpha) * n / alpha;
            LPoint3 sum = plain.GetVert(v) * static_cast<float>(w);
            for (const int k : neighbours) sum += plain.GetVert(k);
            const LPoint3 expected =
                protect && open[v] ? plain.GetVert(v) : sum / static_cast<float>(n + w);
            EXPECT_LT((smooth.GetVert(v) - expected).Len(), 1e-5f);
        }
    }
}

TEST(SubdivMesh, AMeshOfTheSameBaseTakesTheLevelsOver) {
    const LSubdivMesh mesh = Chain(shapes::Torus(12, 8), "LlQL");
    LSubdivMesh follower(Triangulate(shapes::Torus(12, 8)));
    while (follower.SubdivideLike(mesh, true)) {
    }
    EXPECT_EQ(AllVerts(follower), AllVerts(mesh));
    EXPECT_EQ(follower.GetLevelTopology(4), mesh.GetLevelTopology(4));
}

TEST(SubdivMesh, AccessorsAndActiveLevel) {
    LSubdivMesh mesh(Triangulate(shapes::Cube()));
    EXPECT_FALSE(mesh.SetActiveLevel(1));
    EXPECT_FALSE(mesh.ActivateUp());
    mesh.SubdivideAll_Loop(true, false);
    EXPECT_FALSE(mesh.HasLevelChanged());
    mesh.SetVert(20, {1, 2, 3});
    EXPECT_TRUE(mesh.HasLevelChanged());
    EXPECT_EQ(mesh.GetVertByAbsIdx(20), LPoint3(1, 2, 3));
    EXPECT_TRUE(mesh.SetActiveLevel(0));
    EXPECT_FALSE(mesh.HasLevelChanged());
    EXPECT_EQ(mesh.GetVert(20), LPoint3::Zero);
    mesh.SetVertByAbsIdx(1000, {1, 1, 1});
    EXPECT_EQ(mesh.GetVertByAbsIdx(1000), LPoint3::Zero);
    EXPECT_EQ(mesh.GetSubdivs().GetLayer(0), nullptr);
    EXPECT_EQ(mesh.GetSubdivs().GetTop()->GetName(), "1 Tri [f48 v26]");
    EXPECT_EQ(mesh.GetAllLevelsCopy()->GetNumFaces(), 12 + 48);
    EXPECT_FALSE(LSubdivMesh().SubdivideAll_Loop(true, true));
}
