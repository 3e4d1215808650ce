#include "maya/MFnMesh.h"
#include "minihost/deform/DeformerChain.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/mesh/Sets.h"
#include "minihost/shade/Assign.h"
#include "tests/minihost/SceneTest.h"

namespace minihost {
namespace {

class Shade : public SceneTest {};

TEST_F(Shade, EverySceneHasAShaderAndRenderSettings) {
    const NodePtr group = host.scene.Find("initialShadingGroup");
    ASSERT_TRUE(group);
    EXPECT_EQ(SourceNode(group->FindPlug("surfaceShader"))->name(), "lambert1");
    const NodePtr render = host.scene.Find("defaultRenderGlobals");
    ASSERT_TRUE(render && render->FindSlot("preMel") && render->FindSlot("postMel"));
    EXPECT_EQ(host.types.Find("file")->id, MTypeId(0x52544654));
    const NodePtr texture = CreateFileTexture(edits, "a.png");
    for (const char* plug : {"coverage", "repeatUV"})
        EXPECT_EQ(NumberOf(Pull(*texture->FindSlot(plug)->parts[1])), 1) << plug;
    EXPECT_EQ(CreateShadingGroup(edits, "file2"), nullptr);
}

/// Any assignments, with and without history, against a plain list.
RC_GTEST_FIXTURE_PROP(Shade, PolygonsAreInTheGroupThatTheyWereLastPutIn, ()) {
    host.NewScene();
    const NodePtr mesh = *rc::gen::arbitrary<bool>()
                             ? CreateMesh(edits, MakePlane(1, 1, 3, 3)).shape->Share()
                             : CreatePrimitive(edits, "polyCube").shape->Share();
    std::string error;
    if (*rc::gen::arbitrary<bool>()) InsertDeformer(edits, "blendShape", {mesh}, error);
    std::vector<NodePtr> groups{host.scene.Find("initialShadingGroup"),
                                CreateShadingGroup(edits, "lambert", "skin"),
                                CreateShadingGroup(edits, "blinn", "lip")};
    const int count = MeshOf(*mesh)->polygons().count();
    std::vector<NodePtr> expected(static_cast<size_t>(count));
    const size_t deformerSets = host.scene.NodesOfType("groupId").size();
    for (int step = *rc::gen::inRange(1, 6); step > 0; --step) {
        const NodePtr group = *rc::gen::elementOf(groups);
        std::vector<int> polygons;
        if (*rc::gen::arbitrary<bool>()) {
            RC_ASSERT(AssignShading(edits, mesh, group));
            for (int p = 0; p < count; ++p) polygons.push_back(p);
        } else {
            polygons = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, count));
            RC_ASSERT(AssignShading(edits, mesh, group, polygons));
        }
        for (const int p : polygons) expected[size_t(p)] = group;
        MObjectArray shaders;
        MIntArray indices;
        RC_ASSERT(MFnMesh(MObject(mesh)).getConnectedShaders(0, shaders, indices));
        RC_ASSERT(indices.length() == unsigned(count));
        for (unsigned p = 0; p < indices.length(); ++p)
            RC_ASSERT((indices[p] < 0 ? nullptr : shaders[unsigned(indices[p])].object()) ==
                      expected[p]);
    }
    RC_ASSERT(!AssignShading(edits, mesh, groups[0], {count}));
    RC_ASSERT(AssignShading(edits, mesh, groups[0]));  // and leaves no number behind
    RC_ASSERT(host.scene.NodesOfType("groupId").size() == deformerSets);
}

TEST_F(Shade, AChooserTellsTheSetOfItsTexture) {
    const MeshNodes cube = CreatePrimitive(edits, "polyCube");
    const NodePtr chooser = edits.Create("uvChooser"), texture = CreateFileTexture(edits, "a.png");
    MeshOf(*cube.shape);
    ASSERT_TRUE(edits.Connect(cube.shape->FindPlug("uvSet").Element(0).Child(0),
                              chooser->FindPlug("uvSets").Element(0)));
    const NodePtr place = SourceNode(texture->FindPlug("uvCoord"));
    ASSERT_TRUE(edits.Connect(chooser->FindPlug("outUv"), place->FindPlug("uvCoord")));
    const auto name = DataOf<StringData>(Pull(*chooser->FindPlug("uvSets").Element(0).Find()));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->value, "map1");
}

}  // namespace
}  // namespace minihost
