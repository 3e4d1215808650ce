#include "core/subdiv/LSubdivMesh.h"

#include <gtest/gtest.h>

#include <set>

#include "core/mesh/Triangulation.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

std::vector<LPoint3> AllVerts(const LSubdivMesh& mesh) {
    const int count = mesh.GetNumLevelVerts(mesh.GetNumSubivLevels() - 1);
    return {mesh.GetAllVertsPtr(), mesh.GetAllVertsPtr() + count};
}

/// Every shape that has faces, and one with an edge in many faces.
std::vector<PolyMesh> Meshes() {
    std::vector<PolyMesh> meshes = {shapes::Fan(20)};
    for (const shapes::Shape& shape : shapes::AllShapes())
        if (shape.mesh.NumPolygons() > 0) meshes.push_back(shape.mesh);
    return meshes;
}

}  // namespace

TEST(SubdivMesh, LoopLevelsKeepTheNumberingRules) {
    for (const PolyMesh& polygons : Meshes()) {
        LSubdivMesh mesh(Triangulate(polygons));
        for (int level = 1; level <= 3; ++level) {
            const auto below = mesh.GetTopLevelCopy();
            const std::vector<LPoint3> before = AllVerts(mesh);
            ASSERT_TRUE(mesh.SubdivideAll_Loop(false, true));
            ASSERT_EQ(mesh.Validate(), "");
            EXPECT_EQ(mesh.GetActiveLevel(), level);
            EXPECT_EQ(mesh.GetNumFaces(), 4 * below->GetNumFaces());
            // Without smoothing what was there stays.
            const std::vector<LPoint3> after = AllVerts(mesh);
            EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin()));
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
        while (mesh.DeleteTopLevel()) ASSERT_EQ(mesh.Validate(), "");
        EXPECT_EQ(mesh.GetNumSubivLevels(), 1);
        EXPECT_EQ(mesh.GetActiveLevel(), 0);
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
        std::set<int> open;
        for (const auto& [edge, count] : sides)
            if (count == 1) open.insert({edge.first, edge.second});
        for (int v = 0; v < plain.GetNumVerts(); ++v) {
            const auto neighbours = topology.AdjVerts().GetAdjVertsForVert(v);
            const double n = neighbours.size();
            const double c = 3 + 2 * std::cos(2 * M_PI / n), alpha = 1.25 - c * c / 32;
            const double w = (1 - alpha) * n / alpha;
            LPoint3 sum = plain.GetVert(v) * static_cast<float>(w);
            for (const int k : neighbours) sum += plain.GetVert(k);
            const LPoint3 expected =
                protect && open.count(v) ? plain.GetVert(v) : sum / static_cast<float>(n + w);
            EXPECT_LT((smooth.GetVert(v) - expected).Len(), 1e-5f);
        }
    }
}

TEST(SubdivMesh, ALevelIsRebuiltAndFollowedByItsRule) {
    LSubdivMesh mesh(Triangulate(shapes::Torus(12, 8)));
    LSubdivMesh follower(mesh), late(mesh);
    for (const bool smooth : {true, false, true}) mesh.SubdivideAll_Loop(smooth, true);
    const std::vector<LPoint3> first = AllVerts(mesh);
    // A mesh of the same base takes the levels over with their topology.
    while (follower.SubdivideLike(mesh, true)) {
    }
    EXPECT_EQ(AllVerts(follower), first);
    EXPECT_EQ(follower.GetLevelTopology(3), mesh.GetLevelTopology(3));
    for (int v = 0; v < late.GetNumLevelVerts(0); ++v)
        mesh.SetVertByAbsIdx(v, late.GetVertByAbsIdx(v));
    mesh.RebuildLevels();
    EXPECT_EQ(AllVerts(mesh), first);
}

TEST(SubdivMesh, AccessorsAndActiveLevel) {
    LSubdivMesh mesh(Triangulate(shapes::Cube()));
    EXPECT_EQ(mesh.GetNumSubivLevels(), 1);
    EXPECT_FALSE(mesh.SetActiveLevel(1));
    EXPECT_FALSE(mesh.ActivateUp());
    mesh.SubdivideAll_Loop(true, false);
    EXPECT_FALSE(mesh.HasLevelChanged());
    mesh.SetVert(20, {1, 2, 3});
    EXPECT_TRUE(mesh.HasLevelChanged());
    EXPECT_EQ(mesh.GetVertByAbsIdx(20), LPoint3(1, 2, 3));
    EXPECT_TRUE(mesh.SetActiveLevel(0));
    EXPECT_FALSE(mesh.HasLevelChanged());
    EXPECT_EQ(mesh.GetNumVerts(), 8);
    EXPECT_EQ(mesh.GetVert(20), LPoint3::Zero);
    mesh.SetVertByAbsIdx(1000, {1, 1, 1});
    EXPECT_EQ(mesh.GetVertByAbsIdx(1000), LPoint3::Zero);
    EXPECT_EQ(mesh.GetSubdivs().GetLayer(0), nullptr);
    EXPECT_EQ(mesh.GetSubdivs().GetTop()->GetName(), "1 Tri [f48 v26]");
    // The smoothing moved the old vertices too.
    EXPECT_LT(mesh.GetLevelCopy(0)->GetVert(0).Len(), 1.7f);
    EXPECT_EQ(mesh.GetAllLevelsCopy()->GetNumFaces(), 12 + 48);
    EXPECT_FALSE(LSubdivMesh().SubdivideAll_Loop(true, true));
}

TEST(SubdivMesh, BarycentricsHoldTheParametricPlace) {
    for (const PolyMesh& polygons : {shapes::Fan(7), shapes::Cube(), shapes::Grid(3, 2)}) {
        LSubdivMesh mesh(Triangulate(polygons));
        mesh.AllocBarys();
        for (int v = 0; v < mesh.GetNumVerts(); ++v) {
            const LPoint3 b = mesh.GetBaryByAbsIdx(v);
            EXPECT_EQ(b.x + b.y + b.z, 1);
        }
        for (int level = 0; level < 3; ++level) mesh.SubdivideAll_Loop(false, true);
        std::set<int> seen;
        for (int f = 0; f < mesh.GetNumLevelFaces(0); ++f) {
            std::vector<int> faces, again;
            std::vector<LFaceBarys> barys;
            mesh.FindSubFacesAndBary(f, faces, barys);
            mesh.FindSubFaces(std::vector<int>{f}, again, 3);
            EXPECT_EQ(faces, again);
            const LFace base = mesh.GetLevelFace(f, 0);
            for (size_t i = 0; i < faces.size(); ++i) {
                EXPECT_TRUE(seen.insert(faces[i]).second);
                for (int k = 0; k < 3; ++k) {
                    const int v = mesh.GetFace(faces[i]).v[k];
                    const LPoint3 b = barys[i].v[k];
                    // Not smoothed, so a vertex lies where its weights say.
                    const LPoint3 there = mesh.GetVertByAbsIdx(base.v[0]) * b.x +
                                          mesh.GetVertByAbsIdx(base.v[1]) * b.y +
                                          mesh.GetVertByAbsIdx(base.v[2]) * b.z;
                    EXPECT_LT((mesh.GetVert(v) - there).Len(), 1e-6f);
                }
            }
        }
        EXPECT_EQ(static_cast<int>(seen.size()), mesh.GetNumFaces());
        // What the levels add over the flat base is then nothing.
        mesh.SubstructLevel0ByBarys(nullptr);
        for (int v = mesh.GetNumLevelVerts(0); v < mesh.GetNumVerts(); ++v)
            EXPECT_LT(mesh.GetVert(v).Len(), 1e-6f);
    }
}
