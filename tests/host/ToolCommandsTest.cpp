#include <gmock/gmock.h>

#include <set>

#include "maya/MFnSingleIndexedComponent.h"
#include "maya/MGlobal.h"
#include "maya/MSelectionList.h"
#include "tests/host/ToolFixture.h"

// The commands that take up tools, and the tools that select and pick.

namespace kelmo {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// A procedure of the interface that counts its calls in $calls.
const std::string kCounted =
    "global int $calls; global proc kelmoUpdateAffectModeList() { global int $calls; $calls++; }"
    "global string $set; global proc kelmoSetUpVColorUI() { global string $set; $set = \"colour\"; "
    "}";

class ToolCommandsTest : public ToolFixture {
  protected:
    /// Geometry, colours, stencil, textures, their stencil; and the brush.
    std::vector<int> Affects() {
        std::vector<int> all;
        for (const char* plug : {"affectGeometry", "affectVertColor", "affectStencil",
                                 "affectTexture", "affectTexStencil", "sculptMode"})
            all.push_back(Plug("k", plug).asInt());
        return all;
    }
};

TEST_F(ToolCommandsTest, SculptTakesUpTheToolAndSetsWhatItAffects) {
    Must(kCounted);
    Must("KelmoSculpt -mode 0");
    EXPECT_EQ(Run("currentCtx"), "KelmoToolContext1");
    EXPECT_THAT(Affects(), ElementsAre(1, 0, 0, 0, 0, 0));
    Must("KelmoSculpt -mode 1");
    EXPECT_THAT(Affects(), ElementsAre(1, 0, 0, 0, 0, 8));
    Must("KelmoSculpt -mode 4");
    EXPECT_THAT(Affects(), ElementsAre(0, 1, 0, 0, 0, 8));
    EXPECT_EQ(Run("global string $set; $set"), "colour");
    Must("KelmoSculpt -mode 5");
    EXPECT_THAT(Affects(), ElementsAre(0, 0, 1, 0, 0, 8));
    EXPECT_EQ(Run("global int $calls; $calls"), "4");
    // What there is not changes nothing.
    Must("KelmoSculpt -mode 6; KelmoSculpt");
    for (const char* mode : {"2", "3"})
        EXPECT_THAT(Run(std::string("KelmoSculpt -mode ") + mode), StartsWith("error"));
    EXPECT_TRUE(told.Has("painting textures is not part of this version"));
    EXPECT_THAT(Affects(), ElementsAre(0, 0, 1, 0, 0, 8));
    EXPECT_EQ(Run("global int $calls; $calls"), "4");
    Must("setAttr k.multiSculpt 1; KelmoSculpt -mode 4");
    EXPECT_TRUE(told.Has("multi-mesh editing does not support vertex color painting yet."));
    EXPECT_THAT(Affects(), ElementsAre(0, 0, 1, 0, 0, 8));
}

TEST_F(ToolCommandsTest, SculptNeedsAMeshAndMakesItsNode) {
    Must("select -clear");
    EXPECT_THAT(Run("KelmoSculpt -mode 1"), StartsWith("error"));
    EXPECT_TRUE(told.Has("Kelmo: please select mesh to sculpt."));
    EXPECT_EQ(Run("currentCtx"), "selectSuperContext");
    Must("polySphere -radius 4 -name fresh; select fresh; KelmoSculpt -mode 1");
    EXPECT_EQ(Count("KelmoND"), 2);
    EXPECT_EQ(Run("currentCtx"), "KelmoToolContext1");
    EXPECT_EQ(Run("ls -selection"), "fresh");
    // The tool that is on goes on to another.
    Must("polySphere -radius 4 -name another; select another; KelmoSculpt -mode 1");
    EXPECT_EQ(Count("KelmoND"), 3);
    EXPECT_EQ(Run("size(`listRelatives -shapes another`)"), "2");
    EXPECT_EQ(Run("size(`listRelatives -shapes fresh`)"), "1");
    LeaveTool();
    std::ofstream(folder / "bare.obj") << "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 1 3 4\n";
    Must("file -import \"" + (folder / "bare.obj").string() + "\"");
    Must("string $bare[] = `ls -type mesh`; select $bare[size($bare) - 1]");
    EXPECT_THAT(Run("KelmoSculpt"), StartsWith("error"));
    EXPECT_TRUE(told.Has("Vantrel: Can not create Kelmo Node - no UV set is present"));
    EXPECT_EQ(Count("KelmoND"), 3);
}

TEST_F(ToolCommandsTest, SeveralMeshesNeedTheSameLevels) {
    Must("polySphere -radius 4 -name other; Kelmo -create; KelmoSubdivs -newsubdiv");
    Must("select shown other");
    EXPECT_THAT(Run("KelmoSculpt -mode 1"), StartsWith("error"));
    EXPECT_TRUE(told.Has("Kelmo: Objects have differnt number of sudivsion levels. Can't sculpt"));
    EXPECT_EQ(Run("currentCtx"), "selectSuperContext");
    Do(97);
    Must("select shown other; KelmoSculpt -mode 1");
    EXPECT_EQ(Run("currentCtx"), "KelmoToolContext1");
}

class SelectionToolTest : public ToolCommandsTest {
  protected:
    MPxContext& selecting() { return *host.tools.Find("KelmoSelectContext1"); }
    void Select(Places places, unsigned modifiers = 0) {
        const auto& [x, y] = *places.begin();
        MEvent press = At(x, y, modifiers);
        selecting().doPress(press);
        for (const auto& [px, py] : places) {
            MEvent drag = At(px, py, modifiers);
            selecting().doDrag(drag);
        }
        MEvent release = At((places.end() - 1)->first, (places.end() - 1)->second, modifiers);
        selecting().doRelease(release);
    }
    std::set<int> Selected() {
        std::set<int> polygons;
        MSelectionList list;
        MGlobal::getActiveSelectionList(list);
        for (unsigned i = 0; i < list.length(); ++i) {
            MDagPath path;
            MObject component;
            MIntArray elements;
            list.getDagPath(i, path, component);
            if (component.isNull()) continue;
            MFnSingleIndexedComponent(component).getElements(elements);
            for (unsigned e = 0; e < elements.length(); ++e) polygons.insert(elements[e]);
        }
        return polygons;
    }
    MPoint Middle(int polygon) {
        const MObject shape(host.scene.Find("shownShape"));
        const MFnMesh mesh(shape);
        MIntArray corners;
        mesh.getPolygonVertices(polygon, corners);
        MVector sum;
        for (unsigned i = 0; i < corners.length(); ++i) {
            MPoint p;
            mesh.getPoint(corners[i], p);
            sum += p - MPoint();
        }
        return MPoint() + sum / corners.length();
    }
};

TEST_F(SelectionToolTest, ClicksAndDragsSelectWhatIsSeen) {
    Must("KelmoSculpt -mode 1; KelmoSel");
    EXPECT_EQ(Run("currentCtx"), "KelmoSelectContext1");
    EXPECT_EQ(Run("selectMode -query -component"), "1");
    EXPECT_EQ(Run("selectType -query -facet"), "1");
    EXPECT_EQ(Count("KelmoSurface"), 0) << "the session is over";
    Select({{200, 150}});
    const std::set<int> one = Selected();
    ASSERT_EQ(one.size(), 1u);
    M3dView view = M3dView::active3dView();
    short x = 0, y = 0;
    view.worldToView(Middle(*one.begin()), x, y);
    EXPECT_NEAR(x, 200, 8);
    EXPECT_NEAR(y, 150, 8);
    Select({{150, 150}}, MEvent::shiftKey);
    EXPECT_EQ(Selected().size(), 2u);
    Select({{150, 150}}, MEvent::controlKey);
    EXPECT_EQ(Selected(), one);
    // A drag takes all under the circle, on this side of the head alone.
    Select({{200, 150}, {210, 150}, {220, 155}});
    const std::set<int> many = Selected();
    EXPECT_GT(many.size(), 20u);
    for (const int p : many) EXPECT_GT(Middle(p).z, 0) << p;
    Must("undo");
    EXPECT_EQ(Selected(), one);
    Must("redo");
    EXPECT_EQ(Selected(), many);
    Select({{3, 3}});
    EXPECT_TRUE(Selected().empty());
    EXPECT_EQ(Count("kelmoTool"), 1);
    LeaveTool();
    EXPECT_EQ(Count("kelmoTool"), 0);
}

TEST_F(SelectionToolTest, ItShowsTheBaseWhileItIsOn) {
    Do(97);
    Must("setAttr k.numRenderSubdivLvls 1; KelmoSel");
    const MObject shape(host.scene.Find("shownShape"));
    const int base = MFnMesh(shape).numPolygons();
    Select({{200, 150}});
    EXPECT_EQ(Selected().size(), 1u);
    EXPECT_LT(*Selected().begin(), base);
    LeaveTool();
    EXPECT_EQ(Plug("k", "numRenderSubdivLvls").asInt(), 1);
    EXPECT_GT(MFnMesh(shape).numPolygons(), 3 * base);
}

/// Brushes keep to what is selected, and to all again when nothing is.
TEST_F(SelectionToolTest, BrushesKeepToIt) {
    Must("KelmoSel");
    Select({{190, 150}, {200, 150}, {210, 150}});
    std::set<int> corners;
    const MObject shape(host.scene.Find("shownShape"));
    for (const int polygon : Selected()) {
        MIntArray around;
        MFnMesh(shape).getPolygonVertices(polygon, around);
        corners.insert(around.begin(), around.end());
    }
    const auto moved = [&] {
        Must("KelmoSculpt -mode 1");
        const std::vector<float> before = Surface();
        Stroke({{200, 150}, {204, 150}, {208, 150}});
        const std::vector<float> after = Surface();
        std::set<int> vertices;
        for (size_t i = 0; i < after.size(); ++i)
            if (after[i] != before[i]) vertices.insert(static_cast<int>(i / 3));
        return vertices;
    };
    const std::set<int> kept = moved();
    EXPECT_FALSE(kept.empty());
    for (const int v : kept) EXPECT_TRUE(corners.contains(v)) << v;
    Must("KelmoSel");
    Select({{3, 3}});
    const std::set<int> all = moved();
    EXPECT_FALSE(std::includes(corners.begin(), corners.end(), all.begin(), all.end()));
}

TEST_F(ToolCommandsTest, PickMakesATargetOfWhatIsClickedOn) {
    Must("select -clear; createNode transform -name nothing; select nothing");
    EXPECT_THAT(Run("KelmoPick"), StartsWith("error"));
    EXPECT_TRUE(told.Has("Select the Kelmo deformer first"));
    Must("polySphere -radius 4 -name other; Kelmo -create; select shown other");
    EXPECT_THAT(Run("KelmoPick"), StartsWith("error"));
    EXPECT_TRUE(told.Has("Select one Kelmo deformer only"));
    Must("delete other; select shown; KelmoPick");
    EXPECT_EQ(Run("currentCtx"), "KelmoPickContext1");
    const int before = Ask(19);
    const auto click = [&](int x, int y) {
        MEvent event = At(x, y);
        MPxContext& tool = *host.tools.Find("KelmoPickContext1");
        tool.doPress(event);
        tool.doRelease(event);
        host.interpreter.RunDeferred();
    };
    click(3, 3);
    EXPECT_EQ(Run("currentCtx"), "KelmoPickContext1");
    Must("polySphere -radius 1 -name ball; move 0 0 20 ball");
    click(200, 150);
    EXPECT_TRUE(told.Has("topology mismatch - pick object with the same number of triangles"));
    EXPECT_EQ(Ask(19), before);
    Must("move 0 0 -50 ball");
    click(200, 150);
    EXPECT_TRUE(told.Has("Picked: shownShape"));
    EXPECT_EQ(Ask(19), before + 1);
    EXPECT_EQ(Run("currentCtx"), "selectSuperContext");
}

}  // namespace
}  // namespace kelmo
