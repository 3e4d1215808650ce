#include "core/mesh/LNormalCache.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "core/mesh/Triangulation.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LSubdivMesh.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

bool SameBits(const LPoint3& a, const LPoint3& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void ExpectSameBits(const LNormalCache& a, const LNormalCache& b) {
    ASSERT_EQ(a.nverts(), b.nverts());
    for (int v = 0; v < a.nverts(); ++v) ASSERT_TRUE(SameBits(a.GetVNormal(v), b.GetVNormal(v)));
    for (int f = 0; f < a.nfaces(); ++f) ASSERT_TRUE(SameBits(a.GetFNormal(f), b.GetFNormal(f)));
}

/// Moves `count` vertices of a mesh; some twice. Returns which.
std::vector<int> MoveSome(LMesh& mesh, int count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> by(-0.1f, 0.1f);
    std::vector<int> moved;
    for (int k = 0; k < count; ++k) {
        moved.push_back(static_cast<int>(random() % mesh.GetNumVerts()));
        mesh.OffsetVert(moved.back(), {by(random), by(random), by(random)});
    }
    return moved;
}

}  // namespace

TEST(NormalCache, FaceNormalsAreTheMeshesAndVertexNormalsTheirUnweightedSum) {
    for (const shapes::Shape& shape : shapes::AllShapes()) {
        SCOPED_TRACE(shape.name);
        LMesh mesh = Triangulate(shape.mesh);
        LNormalCache cache(&mesh);
        cache.CalcAll();
        std::vector<LPoint3> sums(mesh.GetNumVerts());
        for (int f = 0; f < mesh.GetNumFaces(); ++f) {
            EXPECT_EQ(cache.GetFNormal(f), mesh.GetFaceNormal(f));
            const LFace face = mesh.GetFace(f);
            for (int k = 0; k < 3; ++k)
                if (face.CornerOf(face.v[k]) == k) sums[face.v[k]] += mesh.GetFaceNormal(f);
        }
        for (int v = 0; v < mesh.GetNumVerts(); ++v)
            EXPECT_EQ(cache.GetVNormal(v), Normalized(sums[v])) << v;
    }
}

TEST(NormalCache, WhereFacesAreOfOneSizeVertexNormalsAreTheMeshes) {
    for (const PolyMesh& poly : {shapes::Sphere(0), shapes::Fan(9), shapes::Grid(3, 3, true)}) {
        LMesh mesh = Triangulate(poly);
        LNormalCache cache(&mesh);
        cache.CalcAll();
        for (int v = 0; v < mesh.GetNumVerts(); ++v)
            EXPECT_TRUE(cache.GetVNormal(v).Equals(mesh.GetVertNormal(v), 1e-6f));
    }
}

/// Also with more workers than there is work for, and on a mesh that was another before.
TEST(NormalCache, WhatChangedGivesTheBitsOfAllOfIt) {
    LThreadGroup workers(4);
    LMesh small = Triangulate(shapes::Cube()), mesh = Triangulate(shapes::Torus(90, 60));
    LNormalCache alone(&mesh), shared(&small, &workers), all;
    ASSERT_TRUE(shared.Init(&mesh) && all.Init(&mesh));
    alone.CalcAll();
    shared.CalcAll();
    ExpectSameBits(alone, shared);
    for (const int count : {0, 1, 7, 300, 4000}) {
        const std::vector<int> moved = MoveSome(mesh, count, count);
        for (LNormalCache* cache : {&alone, &shared}) {
            cache->Clear();
            cache->SetVertsMoved(moved);
            cache->CalcChanged(true);
        }
        all.CalcAll();
        ExpectSameBits(alone, all);
        ExpectSameBits(shared, all);
    }
}

TEST(NormalCache, OnlyWhatIsMarkedIsMadeAnew) {
    LMesh mesh = Triangulate(shapes::Sphere(3));
    LNormalCache cache(&mesh);
    cache.CalcAll();
    const LPoint3 before = cache.GetVNormal(0);
    mesh.OffsetVert(0, {0.2f, 0.3f, -0.4f});
    const std::vector<int> moved = {0, 0, -1, mesh.GetNumVerts()};
    cache.SetVertsMoved(moved);
    const auto around = cache.adjfaces()->GetAdjFacesForVert(0);
    EXPECT_EQ(cache.fidxcache().GetCount(), static_cast<int>(around.size()));
    EXPECT_EQ(cache.vidxcache().GetCount(), static_cast<int>(around.size()) + 1);
    cache.CalcChanged(false);
    EXPECT_EQ(cache.GetFNormal(around[0]), mesh.GetFaceNormal(around[0]));
    EXPECT_EQ(cache.GetVNormal(0), before);
    cache.CalcChanged(true);  // the marks are still there
    EXPECT_NE(cache.GetVNormal(0), before);

    cache.Clear();
    mesh.OffsetVert(0, {1, 1, 1});
    cache.SetFaceChanged(-1);
    cache.SetVertChanged(mesh.GetNumVerts());
    EXPECT_EQ(cache.fidxcache().GetCount() + cache.vidxcache().GetCount(), 0);
    cache.SetFaceChanged(around[0]);
    cache.CalcChanged(true);
    EXPECT_EQ(cache.GetFNormal(around[0]), mesh.GetFaceNormal(around[0]));
    EXPECT_NE(cache.GetFNormal(around[1]), mesh.GetFaceNormal(around[1]));
}

TEST(NormalCache, FollowsTheActiveLevel) {
    LSubdivMesh mesh(Triangulate(shapes::Cube()));
    ASSERT_TRUE(mesh.SubdivideAll_Loop(true, false));
    LNormalCache cache(&mesh);
    cache.CalcAll();
    ASSERT_EQ(cache.nfaces(), 48);
    for (int f = 0; f < cache.nfaces(); ++f) EXPECT_EQ(cache.GetFNormal(f), mesh.GetFaceNormal(f));
    mesh.SetActiveLevel(0);
    ASSERT_TRUE(cache.Init(&mesh));
    cache.CalcAll();
    ASSERT_EQ(cache.nfaces(), 12);
    for (int f = 0; f < cache.nfaces(); ++f) EXPECT_EQ(cache.GetFNormal(f), mesh.GetFaceNormal(f));
}

TEST(NormalCache, StandsFacesThatNameNoVertexAndMeshesThatAreNone) {
    LMesh mesh = Triangulate(shapes::Cube());
    LFace face = mesh.GetFace(3);
    face.v[1] = 1000;
    mesh.SetFace(3, face);
    face.v[1] = -5;
    mesh.SetFace(4, face);
    LNormalCache cache(&mesh);
    cache.SetVertsMoved(std::vector<int>{face.v[0]});
    cache.CalcChanged(true);
    EXPECT_EQ(cache.GetFNormal(3), mesh.GetFaceNormal(3));
    cache.CalcAll();
    EXPECT_EQ(cache.GetFNormal(4), mesh.GetFaceNormal(4));
    for (const int i : {-1, 12}) EXPECT_EQ(cache.GetFNormal(i), LPoint3::Zero);

    EXPECT_FALSE(cache.Init(nullptr));
    LMesh empty;
    for (LMesh* none : {static_cast<LMesh*>(nullptr), &empty}) {
        LNormalCache nothing(none);
        nothing.SetVertsMoved(std::vector<int>{0});
        nothing.CalcChanged(true);
        nothing.CalcAll();
        EXPECT_EQ(nothing.GetVNormal(0), LPoint3::Zero);
    }
}
