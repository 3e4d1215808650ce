#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "maya/MFnMesh.h"
#include "maya/MImage.h"
#include "maya/MRenderUtil.h"
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

/// A file texture of 4 x 2 texels, each of which has a colour of its own.
class Sampled : public Shade {
  protected:
    Sampled() {
        const auto folder = std::filesystem::temp_directory_path();
        path = folder / ("kelmo-texels-" + std::to_string(getpid()) + ".png");
        Picture picture{4, 2, 4, {}};
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 4; ++x)
                for (const int c : {60 * x, 100 * (1 - y), 30, 255}) picture.pixels.push_back(c);
        EXPECT_EQ(WritePicture(path, picture), "");
        texture = CreateFileTexture(edits, path);
        place = SourceNode(texture->FindPlug("uvCoord"));
    }
    ~Sampled() override { std::filesystem::remove(path); }

    MFloatVectorArray Colors(const std::string& plug, std::vector<std::pair<float, float>> uvs) {
        MFloatArray us, vs;
        for (const auto& [u, v] : uvs) us.append(u), vs.append(v);
        MFloatVectorArray colors, clear;
        MFloatMatrix camera;
        const int count = static_cast<int>(uvs.size());
        status = MRenderUtil::sampleShadingNetwork(plug, count, false, false, camera, nullptr, &us,
                                                   &vs, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                   colors, clear);
        EXPECT_EQ(colors.length(), clear.length());
        return colors;
    }
    /// The column and the row from below at the middle of which a place of the surface is shown.
    std::pair<double, double> Texel(float u, float v) {
        const auto colors = Colors(texture->name() + ".outColor", {{u, v}});
        EXPECT_TRUE(status);
        return {colors[0].x * 255 / 60, colors[0].y * 255 / 100};
    }

    std::string path;
    NodePtr texture, place;
    MStatus status;
};

TEST_F(Sampled, TexelsLieWhereTheirImageIsPlaced) {
    using At = std::pair<double, double>;
    const auto near = [](At a, At b) {
        return std::abs(a.first - b.first) < 1e-3 && std::abs(a.second - b.second) < 1e-3;
    };
    for (int x = 0; x < 4; ++x)
        for (int y = 0; y < 2; ++y)
            for (const int turn : {-1, 0, 3})
                EXPECT_TRUE(
                    near(Texel(float(x + 0.5) / 4 + float(turn), float(y + 0.5) / 2), At(x, y)))
                    << x << " " << y;
    EXPECT_TRUE(near(Texel(0.25f, 0.25f), At(0.5, 0)));
    EXPECT_TRUE(near(Texel(0.375f, 0.5f), At(1, 0.5)));

    const auto set = [this](const char* plug, std::vector<double> numbers) {
        edits.SetNumbers(place->FindPlug(plug), numbers);
    };
    set("repeatUV", {2, 1});
    EXPECT_TRUE(near(Texel(0.0625f, 0.25f), At(0, 0)));
    EXPECT_TRUE(near(Texel(0.5625f, 0.25f), At(0, 0)));
    edits.Set(place->FindPlug("mirrorU"), 1.0);
    EXPECT_TRUE(near(Texel(0.5625f, 0.25f), At(3, 0)));
    edits.Set(place->FindPlug("mirrorU"), 0.0);
    set("repeatUV", {1, 1});
    set("offset", {0.25, 0.5});
    EXPECT_TRUE(near(Texel(0.125f, 0.25f), At(1, 1)));
    set("offset", {0, 0});
    edits.Set(place->FindPlug("rotateUV"), M_PI);
    EXPECT_TRUE(near(Texel(0.125f, 0.25f), At(3, 1)));
    edits.Set(place->FindPlug("rotateUV"), 0.0);

    // A frame in the upper half, beside which is the plain colour.
    set("coverage", {1, 0.5});
    set("translateFrame", {0, 0.5});
    edits.Set(place->FindPlug("wrapV"), 0.0);
    edits.SetNumbers(texture->FindPlug("defaultColor"), {0, 1, 0});
    EXPECT_TRUE(near(Texel(0.125f, 0.625f), At(0, 0)));
    EXPECT_TRUE(near(Texel(0.125f, 0.875f), At(0, 1)));
    EXPECT_TRUE(near(Texel(0.125f, 0.25f), At(0, 2.55)));
}

TEST_F(Sampled, PlainColoursAndWhatHasNone) {
    const NodePtr group = CreateShadingGroup(edits, "lambert", "skin");
    const NodePtr shader = host.scene.Find("skin");
    edits.SetNumbers(shader->FindPlug("color"), {0.25, 0.5, 1});
    const auto plain = Colors("skin.color", {{0, 0}, {0.5f, 7}});
    ASSERT_EQ(plain.length(), 2u);
    EXPECT_EQ(plain[1], MFloatVector(0.25f, 0.5f, 1));
    ASSERT_TRUE(edits.Connect(texture->FindPlug("outColor"), shader->FindPlug("color")));
    EXPECT_NEAR(Colors("skin.color", {{0.625f, 0.25f}})[0].x, 120 / 255.0, 1e-5);
    for (const char* none :
         {"skin.outColor", "skin.diffuse", "skin.none", "none.color", "color", "skin", ".", ""}) {
        EXPECT_EQ(Colors(none, {{0, 0}}).length(), 0u) << none;
        EXPECT_EQ(status, MS::kFailure) << none;
    }
    EXPECT_NEAR(Colors("skin.color", {{NAN, INFINITY}})[0].x, 0.5, 1e-5);
    std::filesystem::remove(path);
    EXPECT_EQ(Colors("skin.color", {{0, 0}}).length(), 0u);
}

TEST_F(Sampled, AnImageIsReadByItsNode) {
    MImage image;
    ASSERT_TRUE(image.readFromTextureNode(MObject(texture), MImage::kByte));
    unsigned width = 0, height = 0;
    ASSERT_TRUE(image.getSize(width, height));
    EXPECT_EQ(width, 4u);
    EXPECT_EQ(height, 2u);
    EXPECT_EQ(image.depth(), 4u);
    EXPECT_EQ(image.pixels()[0], 0);
    EXPECT_EQ(image.pixels()[1], 0);
    EXPECT_EQ(image.pixels()[4 * 7 + 1], 100);
    EXPECT_FALSE(image.readFromTextureNode(MObject(place)));
    EXPECT_FALSE(image.readFromTextureNode(MObject()));
    EXPECT_FALSE(image.readFromFile(path, MImage::kFloat));
}

}  // namespace
}  // namespace minihost
