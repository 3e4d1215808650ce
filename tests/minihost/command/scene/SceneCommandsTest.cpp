#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "minihost/Host.h"
#include "minihost/command/builtins/Builtins.h"
#include "tests/minihost/Describe.h"

// The everyday commands on nodes, plugs, the selection and transforms, as scripts use them.

namespace minihost {
namespace {

using testing::HasSubstr;

class SceneCommands : public testing::Test {
  protected:
    SceneCommands() : host(Host::Get()) {
        AddBuiltins(host.commands, {"", false, ""});
        host.NewScene();
    }
    std::string Run(const std::string& script) {
        const auto done = host.interpreter.Execute(script);
        return done.error ? done.error->Text() : done.value.AsString();
    }
    std::string Describe() { return minihost::Describe(host.scene); }

    Host& host;
};

TEST_F(SceneCommands, NodesAreMadeNamedPlacedAndFound) {
    EXPECT_EQ(Run("createNode transform -n group"), "group");
    EXPECT_EQ(Run("createNode joint -n hip -p group"), "hip");
    EXPECT_EQ(Run("createNode joint -p hip -n hip1"), "hip1");
    EXPECT_EQ(Run("createNode locator"), "locatorShape1");
    EXPECT_EQ(Run("ls -type joint"), "hip hip1");
    EXPECT_EQ(Run("ls -long \"hip*\""), "|group|hip |group|hip|hip1");
    EXPECT_EQ(Run("listRelatives -ad group"), "hip1 hip");
    EXPECT_EQ(Run("listRelatives -p hip"), "group");
    EXPECT_EQ(Run("rename hip1 leg; ls -dag -type joint"), "hip leg");
    EXPECT_EQ(Run("move 1 2 3 group; parent -w leg; getAttr leg.translate"), "1 2 3");
    EXPECT_EQ(Run("parent leg group; getAttr leg.translate"), "0 0 0");
    EXPECT_EQ(Run("delete group; objExists leg"), "0");
    EXPECT_THAT(Run("createNode nothing"), HasSubstr("there is no node type 'nothing'"));
    EXPECT_THAT(Run("delete nobody"), HasSubstr("there is nothing called 'nobody'"));
    EXPECT_THAT(Run("parent locator1 locatorShape1"), HasSubstr("below itself"));
}

TEST_F(SceneCommands, DialogsAndProgressNeedNobody) {
    EXPECT_EQ(Run("confirmDialog -title Vantrel -message \"go on?\" -button Yes -button No"),
              "Yes");
    EXPECT_EQ(Run("confirmDialog -m \"go on?\" -b Yes -b No -db No") + Run("confirmDialog"),
              "NoConfirm");
    EXPECT_EQ(Run("progressWindow -title t -status s -maxValue 50 -ii 0"), "1");
    EXPECT_EQ(Run("progressWindow -title other"), "0") << "one at a time";
    EXPECT_EQ(Run("progressWindow -e -progress 10; progressWindow -e -step 5 -st on"), "1");
    EXPECT_EQ(Run("progressWindow -q -pr") + Run("progressWindow -q -status"), "15on");
    EXPECT_EQ(Run("progressWindow -q -max") + Run("progressWindow -q -title"), "50t");
    EXPECT_EQ(Run("progressWindow -endProgress; progressWindow -e -progress 1"), "0");
    EXPECT_EQ(Run("progressWindow -q"), "0");
}

TEST_F(SceneCommands, PlugsAreSetAskedAndConnected) {
    Run("createNode transform -n a; createNode transform -n b");
    EXPECT_EQ(Run("setAttr a.translate 1 2.5 -3; getAttr a.ty"), "2.5");
    EXPECT_EQ(Run("setAttr a.rotateX 90; getAttr a.rx"), "90");
    EXPECT_EQ(Run("setAttr a.v off; getAttr a.visibility"), "0");
    EXPECT_EQ(Run("getAttr -type a.translate"), "double3");
    EXPECT_THAT(Run("connectAttr a.translate b.translate"), HasSubstr("Connected a.translate"));
    EXPECT_EQ(Run("getAttr b.translateZ"), "-3");
    EXPECT_THAT(Run("setAttr b.translateX 1"), HasSubstr("fed by a connection"));
    EXPECT_THAT(Run("connectAttr a.rotate b.translate"), HasSubstr("fed by another connection"));
    EXPECT_EQ(Run("listConnections -s 1 -d 0 -p 1 b"), "a.translate");
    EXPECT_EQ(Run("isConnected a.translate b.translate"), "1");
    Run("disconnectAttr a.translate b.translate");
    EXPECT_EQ(Run("getAttr b.translateZ"), "-3");
    EXPECT_EQ(Run("attributeQuery -node a -listChildren translate"),
              "translateX translateY translateZ");
    EXPECT_EQ(Run("attributeQuery -node a -exists nothing"), "0");
    EXPECT_THAT(Run("setAttr a.nothing 1"), HasSubstr("'a' (transform) has no attribute"));
    EXPECT_THAT(Run("setAttr a.translate 1 2"), HasSubstr("takes 3 numbers"));
    EXPECT_THAT(Run("getAttr a.worldMatrix"), HasSubstr("tell an index"));
    EXPECT_EQ(Run("getAttr \"a.worldMatrix[0]\""), Run("getAttr a.matrix"));
}

TEST_F(SceneCommands, TransformsKeepTheirPlaceInTheWorld) {
    Run("createNode transform -n top; createNode transform -n low -p top;"
        "move 1 0 0 top; rotate 0 0 90 top; scale 2 2 2 top; move -ws 5 6 7 low");
    EXPECT_EQ(Run("xform -q -ws -t low"), "5 6 7");
    const std::string before = Run("xform -q -ws -m low");
    Run("float $m[] = `xform -q -ws -m low`; setAttr low.t 0 0 0;"
        "xform -ws -m $m[0] $m[1] $m[2] $m[3] $m[4] $m[5] $m[6] $m[7] $m[8] $m[9] $m[10] $m[11]"
        " $m[12] $m[13] $m[14] $m[15] low");
    Run("parent -w low");
    std::istringstream a(before), b(Run("xform -q -ws -m low"));
    for (double x, y; a >> x && b >> y;) EXPECT_NEAR(x, y, 1e-12);
    EXPECT_EQ(Run("move -r 1 1 1 top; getAttr top.t"), "2 1 1");
}

TEST_F(SceneCommands, AFailingStatementLeavesTheSceneAsItWas) {
    Run("createNode transform -n a; createNode transform -n b; select a b");
    const std::string before = Describe();
    EXPECT_THAT(Run("parent a b nobody"), HasSubstr("nobody"));
    EXPECT_THAT(Run("if (1) { setAttr a.tx 5; delete b; createNode transform; setAttr a.no 1; }"),
                HasSubstr("no attribute"));
    EXPECT_EQ(Describe(), before);
    EXPECT_EQ(host.undo.size(), 3u);
}

/// One statement of a random kind on whatever is there.
std::string RandomStatement(std::mt19937& random) {
    const auto pick = [&random](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    };
    const auto node = [&] { return "n" + std::to_string(pick(6)); };
    const auto plug = [&] {
        constexpr const char* kPlugs[] = {".tx", ".ry", ".sz", ".v", ".translate"};
        return node() + kPlugs[pick(5)];
    };
    switch (pick(9)) {
        case 0:
            return "createNode transform -n " + node();
        case 1:
            return "delete " + node();
        case 2:
            return "connectAttr -f " + plug() + " " + plug();
        case 3:
            return "disconnectAttr " + plug() + " " + plug();
        case 4:
            return "setAttr " + plug() + " " + std::to_string(pick(9));
        case 5:
            return "parent " + node() + " " + node();
        case 6:
            return "select -tgl " + node() + " " + node();
        case 7:
            return "rename " + node() + " " + node();
        default:
            return "move -r 1 2 3 " + node();
    }
}

TEST_F(SceneCommands, UndoAndRedoOfRandomStatementsGiveTheSameScene) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        host.NewScene();
        std::mt19937 random(seed);
        std::vector<std::string> states = {Describe()};
        std::string all;
        for (int i = 0; i < 60; ++i) {
            const size_t steps = host.undo.size();
            const std::string statement = RandomStatement(random);
            all += statement + "\n";
            Run(statement);
            if (host.undo.size() == steps)
                ASSERT_EQ(Describe(), states.back()) << statement;
            else
                states.push_back(Describe());
        }
        const size_t steps = host.undo.size();
        for (size_t i = 1; i <= steps; ++i) {
            Run("undo");
            ASSERT_EQ(Describe(), states[steps - i]) << "seed " << seed << ", undo " << i << "\n"
                                                     << all;
        }
        for (size_t i = 1; i <= steps; ++i) Run("redo");
        ASSERT_EQ(Describe(), states[steps]) << "seed " << seed;
    }
}

TEST_F(SceneCommands, WhatIsDoneWithoutUndoStaysInAStatementToo) {
    Run("createNode transform -n a; setAttr a.tx 1");
    Run("global proc both() { setAttr a.ty 2; undoInfo -stateWithoutFlush off; setAttr a.tx 5;"
        "undoInfo -stateWithoutFlush on; setAttr a.tz 3; }");
    Run("both");
    Run("undo");
    EXPECT_EQ(Run("getAttr a.translate"), "5 0 0");
    // What fails is taken back whole.
    Run("global proc fails() { undoInfo -stateWithoutFlush off; setAttr a.tx 7; nonsense; }");
    Run("fails");
    Run("undoInfo -stateWithoutFlush on");
    EXPECT_EQ(Run("getAttr a.translate"), "5 0 0");
}

TEST_F(SceneCommands, MeshesAreMadeBoundBlendedAndShaded) {
    EXPECT_EQ(Run("polyPlane -n sheet -w 4 -h 4 -sx 4 -sy 4"), "sheet polyPlane1");
    EXPECT_EQ(Run("polyPlane -n smile -w 6 -h 4 -sx 4 -sy 4 -ch 0"), "smile");
    EXPECT_EQ(Run("createNode joint -n hip; createNode joint -n knee -p hip; move 2 0 0 knee;"
                  "skinCluster -n skin -mi 2 hip sheet; skinCluster -q -inf skin"),
              "hip knee");
    EXPECT_EQ(Run("getAttr skin.maxInfluences"), "2");
    EXPECT_EQ(Run("blendShape -n mix -w 0 0.5 smile sheet; getAttr mix.weight[0]"), "0.5");
    EXPECT_THAT(Run("blendShape -w 3 1 smile sheet"), HasSubstr("there is no target 3"));
    EXPECT_EQ(Run("select -r sheet; deformer -type tweak -n last"), "last");
    EXPECT_THAT(Run("deformer -type transform sheet"), HasSubstr("is no type of deformer"));
    EXPECT_THAT(Run("deformer -type tweak hip"), HasSubstr("select the mesh"));
    EXPECT_EQ(Run("createAndAssignShader blinn smile"), "blinn1SG");
    EXPECT_EQ(Run("sets -e -fe initialShadingGroup \"smile.f[0:3]\""), "initialShadingGroup");
    EXPECT_THAT(Run("sets -e -fe skin smile"), HasSubstr("is no shading group"));
    const std::string before = Describe();
    Run("undo; undo; undo; undo; redo; redo; redo; redo");
    EXPECT_EQ(Describe(), before);
}

}  // namespace
}  // namespace minihost
