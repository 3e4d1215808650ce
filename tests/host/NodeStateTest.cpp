#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "maya/MFnMesh.h"
#include "tests/host/ModuleFixture.h"

// What a node keeps: through scenes, exported files, a skin that moves under it.

namespace kelmo {
namespace {

class NodeStateTest : public ModuleFixture {
  protected:
    /// Levels, a sculpt, and a stored shape; returns what the node shows.
    std::vector<float> MakeState() {
        MakeNode(kHead);
        return MakeStateOver();
    }
    std::vector<float> MakeStateOver() {
        Do(97);
        Do(0);
        Must(
            "createNode locator -name brush; setAttr k.sculptMode 8; setAttr k.brushNorm 0 0 1;"
            "setAttr k.toolSize[8] 4; setAttr k.paintPressMult[8] 1; setAttr k.startZ 8;"
            "connectAttr brush.matrix k.brush; move 0.5 0 8 brush; move 1 0.5 8 brush;"
            "move 1.5 1 8 brush; disconnectAttr brush.matrix k.brush");
        Must("setAttr k.param0 3");
        Do(9);
        Do(1);
        return Output();
    }
    std::string Save(const std::string& name) {
        const std::string path = folder / name;
        Do(28);
        Must("file -rename \"" + path + "\"; file -save -force");
        Do(30);
        return path;
    }
    void Open(const std::string& path) {
        Must("file -force -open \"" + path + "\"");
        Do(29);
    }
};

TEST_F(NodeStateTest, ComesBackFromScenesOfBothForms) {
    const std::vector<float> shown = MakeState();
    Must("setAttr k.numRenderSubdivLvls 1");
    const std::vector<float> level1 = Output();
    Must(
        "setAttr k.numRenderSubdivLvls 0; setAttr k.symmetry 2; setAttr k.rbfScale 2.5;"
        "setAttr k.displayMode 1");
    for (const char* name : {"state.mhs", "state.mhb"}) {
        const std::string path = Save(name);
        Open(path);
        EXPECT_EQ(Output(), shown) << name << told.text;
        EXPECT_EQ(Ask(90), 2);
        EXPECT_EQ(Ask(24, 3), 0);
        EXPECT_EQ(Ask(24, 4), 1);
        Must("setAttr k.numRenderSubdivLvls 1");
        EXPECT_EQ(Output(), level1) << name;
        Must("setAttr k.numRenderSubdivLvls 0");
        EXPECT_EQ(Plug("k", "rbfScale").asFloat(), 2.5f);
        EXPECT_EQ(Plug("k", "symmetry").asInt(), 4) << "the tool's state is not stored";
        EXPECT_EQ(Plug("k", "paintPressMult").numElements(), 20u);
    }
}

TEST_F(NodeStateTest, GoesFromNodeToNodeByAFile) {
    const std::vector<float> shown = MakeState();
    const std::string path = folder / "state.node";
    Must("setAttr -type \"string\" k.param2 \"" + path + "\"");
    Do(32);
    ASSERT_TRUE(std::filesystem::exists(path)) << told.text;
    EXPECT_EQ(Output(), shown);
    host.NewScene();
    MakeNode(kHead);
    Output();
    Must("setAttr -type \"string\" k.param2 \"" + path + "\"");
    Do(31);
    EXPECT_EQ(Output(), shown) << told.text;
    // Cut off and broken files are told of, and the node goes on.
    std::ifstream in(path, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(in), {}};
    std::mt19937 random(5);
    for (int i = 0; i < 40; ++i) {
        std::string bad = whole;
        if (i % 2)
            bad.resize(random() % bad.size());
        else
            bad[8 + random() % 4000] ^= static_cast<char>(1 + random() % 255);
        std::ofstream(path, std::ios::binary) << bad;
        Do(31);
        Output();
        Do(0);
        Do(1);
    }
    std::filesystem::remove(path);
    told.text.clear();
    Do(31);
    EXPECT_TRUE(told.Has("Vantrel: failed to read from file " + path)) << told.text;
}

TEST_F(NodeStateTest, TheSculptRidesOnASkin) {
    MakeNode(kHead);
    // The shape's own mesh stands before the skin.
    Must("createNode joint -name jointA; createNode joint -name jointB -parent jointA");
    const std::string bound = Run("string $t[] = `listRelatives -parent " + source + "`; $t[0]");
    Must("skinCluster jointA jointB " + bound);
    const std::vector<float> still = MakeStateOver();
    Must("setAttr jointA.rotateZ 90");
    const std::vector<float> turned = Output();
    ASSERT_EQ(turned.size(), still.size());
    // Both joints turn as one: so does all that rides on them.
    for (size_t v = 0; v < still.size(); v += 3) {
        ASSERT_NEAR(turned[v], -still[v + 1], 2e-4);
        ASSERT_NEAR(turned[v + 1], still[v], 2e-4);
        ASSERT_NEAR(turned[v + 2], still[v + 2], 2e-4);
    }
    Must("setAttr k.numRenderSubdivLvls 1");
    EXPECT_GT(Output().size(), still.size());
    EXPECT_EQ(Points("k", "outputProxy").size(), still.size());
    Must("setAttr k.forceRenderTopLevel 1; setAttr k.numRenderSubdivLvls 0");
    EXPECT_GT(Output().size(), still.size()) << "a batch shows the top";
}

}  // namespace
}  // namespace kelmo
