#include "core/mesh/LMeshObject.h"

#include <gtest/gtest.h>

#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

std::vector<int> SelectedFaces(const LMeshObject& object) {
    std::vector<int> faces;
    for (int f = 0; f < object.GetNumFaces(); ++f)
        if (object.IsFaceSelected(f)) faces.push_back(f);
    return faces;
}

}  // namespace

TEST(MeshObject, SelectionGrowsAndShrinksByWholePolygons) {
    const auto node = OpenNode(shapes::Grid(4, 4));  // polygon p has the faces 2p and 2p + 1
    LMeshObject& object = *node->lobject();
    object.ExpandSelection();
    EXPECT_TRUE(SelectedFaces(object).empty());
    object.SelectFace(10, true, true);  // half of polygon 5, which lies inside
    object.ExpandSelection();
    const std::vector<int> grown = SelectedFaces(object);
    EXPECT_TRUE(object.IsFaceSelected(11)) << "the other half";
    EXPECT_GT(grown.size(), 4u);
    for (const int f : grown) EXPECT_TRUE(object.IsFaceSelected(f ^ 1)) << "polygons stay whole";
    object.ReduceSelection();
    EXPECT_LT(SelectedFaces(object).size(), grown.size());
    object.ClearSelection();
    EXPECT_FALSE(object.HasSelection());
}

TEST(MeshObject, LevelsDeriveSelectionAndVisibilityFromTheBase) {
    const auto node = OpenNode(shapes::Cube(), 1, 2);
    LMeshObject& object = *node->lobject();
    object.SelectFace(2, true, true);
    object.HideFace(5);
    object.UpdateLevelVisibility();
    object.SetMtlIds(std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    for (const int level : {2, 0, 1, 2}) {
        ASSERT_TRUE(object.SetActiveSubdivLevel(level));
        const int per = 1 << (2 * level);
        std::vector<char> selectedVerts(object.GetNumVerts(), 1), hiddenVerts(object.GetNumVerts());
        for (int f = 0; f < object.GetNumFaces(); ++f) {
            EXPECT_EQ(object.IsFaceSelected(f), f / per == 2);
            EXPECT_EQ(object.IsFaceVisible(f), f / per != 5);
            EXPECT_EQ(object.GetFaceMtlId(f), f / per);
            for (const int v : object.GetGeomFace(f).v) {
                if (f / per != 2) selectedVerts[v] = 0;
                if (f / per == 5) hiddenVerts[v] = 1;
            }
        }
        for (int v = 0; v < object.GetNumVerts(); ++v) {
            EXPECT_EQ(object.IsVertSelected(v), selectedVerts[v] != 0);
            EXPECT_EQ(object.IsVertVisible(v), !hiddenVerts[v]);
        }
    }
    EXPECT_FALSE(object.IsFaceVisible(object.GetNumFaces()));
    object.SetVoidMtls({9, 0, 77});
    for (const int level : {2, 0, 1}) {
        ASSERT_TRUE(object.SetActiveSubdivLevel(level));
        for (int f = 0; f < object.GetNumFaces(); ++f) {
            const int id = f >> (2 * level);
            EXPECT_EQ(object.GetFaceMtlId(f), id == 0 || id == 9 ? -1 : id) << level;
        }
    }
    object.SetVoidMtls({});
    EXPECT_EQ(object.GetFaceMtlId(0), 0);
    ASSERT_TRUE(object.SetActiveSubdivLevel(2));
    object.ClearMtlIds();
    EXPECT_EQ(object.GetFaceMtlId(0), -1);
    object.HideSelected();
    EXPECT_FALSE(object.IsFaceVisible(2 * 16));
    EXPECT_TRUE(object.IsFaceVisible(5 * 16)) << "what was hidden before is replaced";
    object.InvertHidden();
    EXPECT_TRUE(object.IsFaceVisible(2 * 16));
    object.ShowAll();
    EXPECT_FALSE(object.HasHidden());
}

TEST(MeshObject, DeletingALevelTakesBackItsSmoothing) {
    const auto node = OpenNode(shapes::Torus(8, 6));
    LMeshObject& object = *node->lobject();
    const std::vector<LPoint3> base = AllVerts(*object.GetOrigGeom());
    object.SubdivideAll_Loop(true, true);
    const LPoint3 smoothed = object.GetGeomVert(0);
    object.SubdivideAll_Loop(true, true);
    EXPECT_FALSE(object.GetGeomVert(0) == smoothed);
    object.DeleteTopLevelSudiv(false);
    EXPECT_EQ(object.GetGeomVert(0), smoothed);
    object.DeleteTopLevelSudiv(false);
    EXPECT_TRUE(SameBits(AllVerts(*object.GetOrigGeom()), base));
    EXPECT_FALSE(object.DeleteTopLevelSudiv(false));
}

TEST(MeshObject, ANewBaseCarriesToAllLevels) {
    const auto node = OpenNode(shapes::Torus(8, 6), 1, 2);
    LMeshObject& object = *node->lobject();
    int count = 0;
    const LPoint3* input = object.GetInput(count);
    std::vector<LPoint3> doubled(input, input + count);
    for (LPoint3& p : doubled) p *= 2.0f;
    const LPoint3 before = object.GetGeomVert(300);
    ASSERT_TRUE(object.Update(doubled.data(), nullptr, -1));
    EXPECT_LT((object.GetGeomVert(300) - before * 2.0f).Len(), 1e-5f);
    EXPECT_EQ(object.GetOrigGeom()->GetActiveLevel(), 2);
    ASSERT_TRUE(object.Update(nullptr, nullptr, 0));
    EXPECT_EQ(object.GetOrigGeom()->GetNumSubivLevels(), 1);
    EXPECT_EQ(object.GetGeomVert(7), doubled[7]);
    // Smoothing of the object shrinks what is worked on and keeps the input.
    node->settings().objSmIt = 3;
    ASSERT_TRUE(object.Update(nullptr, nullptr, -1));
    EXPECT_LT(object.GetGeomVert(0).Len(), doubled[0].Len());
    EXPECT_EQ(object.GetInput(count)[0], doubled[0]);
    EXPECT_EQ(object.GetBlured(count)[0], object.GetGeomVert(0));
}
