#include "core/mesh/LMesh.h"

#include <gtest/gtest.h>

#include "core/mesh/Triangulation.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

TEST(Mesh, CopiesShareTopologyUntilOneEditsIt) {
    LMesh first = Triangulate(shapes::Cube());
    LMesh second = first;
    EXPECT_EQ(first.Topology(), second.Topology());
    const LFace face = first.GetFace(0);
    second.SetFace(0, second.GetFace(5));
    EXPECT_NE(first.Topology(), second.Topology());
    EXPECT_EQ(first.GetFace(0).v[0], face.v[0]);
    second.SetVert(0, {9, 9, 9});
    EXPECT_FALSE(first.GetVert(0) == second.GetVert(0));
}

TEST(Mesh, LocalFramesCarryTheTriangleAndFailOnCollapsedOnes) {
    const LMesh mesh = Triangulate(shapes::Torus(9, 7));
    const LAdjFaceList& adjacency = mesh.Topology()->AdjFaces();
    for (const LFace& face : mesh.Faces()) {
        LMatrix3 plain, smooth;
        ASSERT_TRUE(mesh.calcTM(face, plain));
        ASSERT_TRUE(mesh.calcTM(face, adjacency, smooth));
        const LPoint3 b = mesh.GetVert(face.v[1]), c = mesh.GetVert(face.v[2]);
        EXPECT_TRUE(plain.TransfromPoint({1, 0, 0}).Equals(b, 1e-6f));
        EXPECT_TRUE(plain.TransfromPoint({0, 1, 0}).Equals(c, 1e-6f));
        EXPECT_NEAR(plain[2] % plain[0], 0, 1e-6f);
        EXPECT_NEAR(smooth[2].Len(), 1, 1e-6f);
        EXPECT_GT(smooth[2] % plain[2], 0.8f);
    }
    LMesh collapsed(3, 1);
    LMatrix3 tm;
    EXPECT_FALSE(collapsed.calcTM(collapsed.GetFace(0), tm));
    EXPECT_EQ(tm, LMatrix3::Identity);
}

TEST(Mesh, TransformsTakeTheFirstFacesFrame) {
    // Two triangles that share an edge: the shared corners follow face 0.
    LMesh mesh = Triangulate(shapes::Polygon(4));
    std::vector<LMatrix3> shift(2);
    shift[0][3] = {1, 0, 0};
    shift[1][3] = {0, 5, 0};
    const LMesh before = mesh;
    mesh.TransformByLocal(shift.data());
    for (int v = 0; v < 4; ++v) {
        const bool inFirst = before.GetFace(0).CornerOf(v) >= 0;
        EXPECT_EQ(mesh.GetVert(v), before.GetVert(v) + (inFirst ? shift[0][3] : shift[1][3]));
    }
    mesh.TransformVectorsByLocal(shift.data());  // vectors don't feel the translation
    EXPECT_EQ(mesh.GetVert(0), before.GetVert(0) + shift[0][3]);
}
