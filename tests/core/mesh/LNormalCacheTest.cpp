#include "core/mesh/LNormalCache.h"

#include <gtest/gtest.h>

#include <random>

#include "core/mesh/Triangulation.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LSubdivMesh.h"
#include "tests/core/math/SameBits.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

/// All normals, those of the vertices first.
std::vector<LPoint3> Normals(const LNormalCache& cache) {
    std::vector<LPoint3> normals;
    for (int v = 0; v < cache.nverts(); ++v) normals.push_back(cache.GetVNormal(v));
    for (int f = 0; f < cache.nfaces(); ++f) normals.push_back(cache.GetFNormal(f));
    return normals;
}

/// Face normals are the mesh's, those of vertices their unweighted sum.
std::vector<LPoint3> PlainNormals(const LMesh& mesh) {
    std::vector<LPoint3> normals(mesh.GetNumVerts());
    for (int f = 0; f < mesh.GetNumFaces(); ++f) {
        const LFace face = mesh.GetFace(f);
        normals.push_back(mesh.GetFaceNormal(f));
        for (int k = 0; k < 3; ++k)
            if (face.CornerOf(face.v[k]) == k) normals[face.v[k]] += normals.back();
    }
    for (int v = 0; v < mesh.GetNumVerts(); ++v) normals[v].Normalize();
    return normals;
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

TEST(NormalCache, HasThePlainNormalsOfTheActiveLevel) {
    for (const shapes::Shape& shape : shapes::AllShapes()) {
        LSubdivMesh mesh(Triangulate(shape.mesh));
        LNormalCache cache(&mesh);
        cache.CalcAll();
        EXPECT_EQ(Normals(cache), PlainNormals(mesh)) << shape.name;
        if (!mesh.SubdivideAll_Loop(true, false)) continue;
        for (const int level : {1, 0}) {
            mesh.SetActiveLevel(level);
            ASSERT_TRUE(cache.Init(&mesh));
            cache.CalcAll();
            EXPECT_EQ(Normals(cache), PlainNormals(mesh)) << shape.name << ", level " << level;
        }
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
    EXPECT_TRUE(SameBits(Normals(alone), Normals(shared)));
    for (const int count : {0, 1, 7, 300, 4000}) {
        const std::vector<int> moved = MoveSome(mesh, count, count);
        all.CalcAll();
        for (LNormalCache* cache : {&alone, &shared}) {
            cache->Clear();
            cache->SetVertsMoved(moved);
            cache->CalcChanged(true);
            EXPECT_TRUE(SameBits(Normals(*cache), Normals(all))) << count;
        }
    }
}

TEST(NormalCache, StandsFacesThatNameNoVertexAndMeshesThatAreNone) {
    LMesh mesh = Triangulate(shapes::Cube());
    for (const int wrong : {1000, -5}) {
        LFace face = mesh.GetFace(3);
        face.v[1] = wrong;
        mesh.SetFace(3, face);
        LNormalCache cache(&mesh);
        cache.SetVertsMoved(std::vector<int>{face.v[0]});
        cache.CalcChanged(true);
        EXPECT_EQ(cache.GetFNormal(3), mesh.GetFaceNormal(3));
        cache.CalcAll();
        for (const int i : {-1, 12}) EXPECT_EQ(cache.GetFNormal(i), LPoint3::Zero);
    }
    LMesh empty;
    for (LMesh* none : {static_cast<LMesh*>(nullptr), &empty}) {
        LNormalCache nothing(none);
        nothing.SetVertsMoved(std::vector<int>{0});
        nothing.CalcChanged(true);
        nothing.CalcAll();
        EXPECT_EQ(nothing.GetVNormal(0), LPoint3::Zero);
    }
}
