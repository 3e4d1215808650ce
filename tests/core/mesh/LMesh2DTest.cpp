#include "core/mesh/LMesh2D.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/core/mesh/TestMeshes.h"

using namespace VantrelSDK;

namespace {

/// The sheet of nx x ny squares, seen from above.
template <class Mesh>
void MakeSheet(Mesh& mesh, int nx, int ny) {
    const TestMesh sheet = Grid(nx, ny);
    mesh.Allocate(sheet.NumVerts(), static_cast<int>(sheet.faces.size()));
    for (int v = 0; v < mesh.GetNumVerts(); ++v)
        mesh.SetVert(v, LPoint2(sheet.verts[v].x, sheet.verts[v].y));
    for (int f = 0; f < mesh.GetNumFaces(); ++f) mesh.SetFace(f, sheet.faces[f]);
}

}  // namespace

TEST(Mesh2D, OutOfRangeReadsZeroAndWritesNothing) {
    LMesh2D mesh;
    MakeSheet(mesh, 2, 2);
    const LMesh2D before = mesh;
    for (const int i : {-1, INT32_MIN, 9, 8 + 9, INT32_MAX}) {
        mesh.SetVert(i, {1, 2});
        mesh.OffsetVert(i, {1, 2});
        mesh.SetFace(i, LFace{{1, 1, 1}, 1});
        EXPECT_EQ(mesh.GetVert(i), LPoint2::Zero);
        EXPECT_EQ(mesh.GetFace(i).id, ZeroFace.id);
    }
    for (int v = 0; v < 9; ++v) EXPECT_EQ(mesh.GetVert(v), before.GetVert(v));
    for (int f = 0; f < 8; ++f) EXPECT_EQ(mesh.GetFace(f).CornerOf(before.GetFace(f).v[1]), 1);
    EXPECT_TRUE(mesh.Allocate(-3, -1));
    EXPECT_EQ(mesh.GetNumVerts() + mesh.GetNumFaces(), 0);
}

TEST(Mesh2D, CopiesHaveVerticesAndFacesOfTheirOwn) {
    LMesh2D first, second(1, 1);
    MakeSheet(first, 3, 1);
    EXPECT_TRUE(second.CopyFrom(&first));
    EXPECT_TRUE(second.CopyFrom(nullptr));
    EXPECT_TRUE(second.CopyFrom(&second));
    ASSERT_EQ(second.GetNumVerts(), 8);
    ASSERT_EQ(second.GetNumFaces(), 6);
    const float moved[2] = {7, 8};
    second.SetVert(3, moved);
    second.GetFacesPtr()[0] = ZeroFace;
    EXPECT_EQ(second.GetVertsPtr()[3], LPoint2(7, 8));
    EXPECT_EQ(first.GetVert(3), LPoint2(3, 0));
    EXPECT_EQ(first.GetFace(0).CornerOf(1), 1);
    second.ClearVerts();
    EXPECT_EQ(second.GetVert(3), LPoint2::Zero);
    second.Free();
    EXPECT_EQ(second.GetVertsPtr(), nullptr);
}

/// Dirty are the vertices that were offset and the faces with a dirty corner, no others.
RC_GTEST_PROP(Mesh2Ddirty, MarksWhatWasOffsetAndTheFacesAround,
              (const std::vector<int8_t>& offsets)) {
    LMesh2Ddirty mesh;
    MakeSheet(mesh, 5, 4);
    const LAdjFaceList around({mesh.GetFacesPtr(), size_t(mesh.GetNumFaces())}, 30);
    mesh.SetAdjFaces(&around);
    for (int use = 0; use < 2; ++use) {
        std::vector<LPoint2> points(mesh.GetVertsPtr(), mesh.GetVertsPtr() + 30);
        std::vector<uint8_t> moved(30);
        for (const int v : offsets) {
            mesh.OffsetVert(v, {1, 0.5f});
            if (v < 0 || v >= 30) continue;
            points[v] += {1, 0.5f};
            moved[v] = 1;
        }
        RC_ASSERT(mesh.dverts() == moved);
        for (int v = 0; v < 30; ++v) RC_ASSERT(mesh.GetVert(v) == points[v]);
        for (int f = 0; f < mesh.GetNumFaces(); ++f) {
            const LFace face = mesh.GetFace(f);
            RC_ASSERT(mesh.dfaces()[f] == (moved[face.v[0]] | moved[face.v[1]] | moved[face.v[2]]));
        }
        mesh.ClearDirty();
    }
}

TEST(Mesh2Ddirty, ADirtyVertexIsNotWalkedAround) {
    LMesh2Ddirty mesh;
    MakeSheet(mesh, 1, 1);
    mesh.OffsetVert(0, {1, 1});  // without adjacency
    const LAdjFaceList around({mesh.GetFacesPtr(), 2}, 4);
    mesh.SetAdjFaces(&around);
    mesh.OffsetVert(0, {1, 1});
    EXPECT_EQ(mesh.dfaces(), std::vector<uint8_t>(2));
    mesh.ClearDirty();
    mesh.OffsetVert(0, {1, 1});
    EXPECT_NE(mesh.dfaces(), std::vector<uint8_t>(2));
}

TEST(Mesh2Ddirty, NewFacesForgetTheMarksAndTheFacesAround) {
    LMesh2D plain;
    MakeSheet(plain, 2, 1);
    const LAdjFaceList around({plain.GetFacesPtr(), 4}, 6);
    LMesh2Ddirty mesh(6, 4, &around);
    EXPECT_EQ(mesh.adjf(), &around);
    mesh.OffsetVert(1, {1, 1});
    mesh.CopyFrom(&plain);
    EXPECT_EQ(mesh.adjf(), nullptr);
    EXPECT_EQ(mesh.dverts(), std::vector<uint8_t>(6));
    EXPECT_EQ(mesh.dfaces(), std::vector<uint8_t>(4));
    mesh.Free();
    EXPECT_TRUE(mesh.dverts().empty() && mesh.dfaces().empty());
}
