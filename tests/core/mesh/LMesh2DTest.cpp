#include "core/mesh/LMesh2D.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "core/mesh/Triangulation.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

/// A sheet of 5 x 4 squares seen from above: 30 vertices and 40 faces.
template <class Mesh>
void MakeSheet(Mesh& mesh) {
    const LMesh sheet = Triangulate(shapes::Grid(5, 4));
    mesh.Allocate(sheet.GetNumVerts(), sheet.GetNumFaces());
    for (int v = 0; v < mesh.GetNumVerts(); ++v)
        mesh.SetVert(v, LPoint2(sheet.GetVert(v).x, sheet.GetVert(v).y));
    for (int f = 0; f < mesh.GetNumFaces(); ++f) mesh.SetFace(f, sheet.GetFace(f));
}

const std::vector<uint8_t> kCleanVerts(30), kCleanFaces(40);

}  // namespace

/// Dirty are the vertices that were offset and the faces with a dirty corner, no others.
RC_GTEST_PROP(Mesh2Ddirty, MarksWhatWasOffsetAndTheFacesAround,
              (const std::vector<int8_t>& offsets)) {
    LMesh2Ddirty mesh;
    MakeSheet(mesh);
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

TEST(Mesh2Ddirty, ADirtyVertexIsNotWalkedAroundAndNewFacesForgetTheMarks) {
    LMesh2D plain;
    LMesh2Ddirty mesh;
    MakeSheet(plain);
    MakeSheet(mesh);
    mesh.OffsetVert(0, {1, 1});  // without adjacency
    const LAdjFaceList around({mesh.GetFacesPtr(), 40}, 30);
    mesh.SetAdjFaces(&around);
    mesh.OffsetVert(0, {1, 1});
    EXPECT_EQ(mesh.dfaces(), kCleanFaces);
    mesh.ClearDirty();
    mesh.OffsetVert(0, {1, 1});
    EXPECT_NE(mesh.dfaces(), kCleanFaces);
    mesh.CopyFrom(&plain);
    EXPECT_EQ(mesh.adjf(), nullptr);
    EXPECT_TRUE(mesh.dverts() == kCleanVerts && mesh.dfaces() == kCleanFaces);
    mesh.Free();
    EXPECT_TRUE(mesh.dverts().empty() && mesh.dfaces().empty());
}
