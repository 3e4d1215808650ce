#include <gmock/gmock.h>

#include <regex>

#include "app/cli/InterfaceProcedures.h"
#include "tests/host/ModuleFixture.h"
#include "tests/minihost/Describe.h"

// The module's commands, as scripts use them.

namespace kelmo {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct Interface {
    Interface() { AddInterfaceProcedures(minihost::Host::Get().commands); }
};

class CommandsTest : private Interface, public ModuleFixture {
  protected:
    /// The scene but for what nodes were told last, and what renders call from the first node on.
    std::string Scene() {
        static const std::regex kTold(" (commnad|execute0?|param[0-3]|(pre|post)Mel) = .*\n");
        return std::regex_replace(minihost::Describe(host.scene), kTold, "");
    }
    std::vector<std::string> MeshKinds() {
        return {
            "polySphere -n head",
            "file -import \"" + kHead + "\"; rename head head",
            "polySphere -n head; setAttr headShape.pnts[5].pnty 0.25; setAttr "
            "headShape.pnts[9].pntx 0.5",
            "polySphere -n head; createNode joint -n a; createNode joint -n b; move 0 1 0 b;"
            "skinCluster a b head; setAttr tweak1.vlist[0].vertex[5].yVertex 0.25",
        };
    }
    void ExpectShape(const std::vector<float>& wanted, const std::string& why) {
        const std::vector<float> points = Points("headShape", "outMesh");
        ASSERT_EQ(points.size(), wanted.size()) << why;
        for (size_t i = 0; i < wanted.size(); ++i)
            ASSERT_NEAR(points[i], wanted[i], 1e-5) << why << ": " << i;
    }
    /// One stroke of the Pull brush over the top of the ball.
    void Sculpt(const std::string& node) {
        Must("undoInfo -state 0; select " + node +
             "; if (!size(`ls brush`)) createNode locator -name brush -ss; setAttr " + node +
             ".sculptMode 8; setAttr " + node + ".toolSize[8] 0.6; setAttr " + node +
             ".brushNorm 0 1 0; setAttr " + node + ".startY 1");
        Must("undoInfo -state 1; KelmoStroke");
        Must("undoInfo -state 0; connectAttr brush.matrix " + node +
             ".brush; move 0.1 1 0 brush; move 0.3 0.95 0 brush; disconnectAttr brush.matrix " +
             node + ".brush; undoInfo -state 1");
    }
};

/// Whatever makes a mesh, and whatever class of node: the mesh stays as it is, and undo leaves
/// nothing behind.
TEST_F(CommandsTest, ANodeIsMadeAndTakenBack) {
    for (const std::string& kind : MeshKinds())
        for (const char* make : {"select head; Kelmo -create", "Kelmo -create -notweak -node head",
                                 "KelmoNew -isdeformer -geometry head"}) {
            host.NewScene();
            Must(kind + "; select head");
            const std::string why = kind + " / " + make, before = Scene();
            const std::vector<float> points = Points("headShape", "outMesh");
            const std::string node = Run(make);
            ASSERT_NE(host.scene.Find(node), nullptr) << why << told.text;
            const std::string after = Scene();
            EXPECT_FLOAT_EQ(Plug(node, "toolSize").elementByLogicalIndex(8).asFloat(), 0.05f);
            ExpectShape(points, why);
            ASSERT_TRUE(host.undo.Undo());
            EXPECT_TRUE(Scene() == before) << why;
            ExpectShape(points, why + " undone");
            ASSERT_TRUE(host.undo.Redo());
            EXPECT_TRUE(Scene() == after) << why;
            ExpectShape(points, why + " redone");
        }
}

TEST_F(CommandsTest, ANodeIsWiredAndKnown) {
    Must(MeshKinds()[3] + "; select headShape");
    ASSERT_EQ(Run("Kelmo -create"), "KelmoND1") << told.text;
    EXPECT_EQ(Run("listConnections -s 1 -d 0 -p 1 KelmoND1"),
              "tweak1.outputGeometry[0] skinCluster1.outputGeometry[0] time1.outTime");
    EXPECT_EQ(Plug("KelmoND1", "versionInt").asInt(), 6503);
    EXPECT_EQ(Run("Kelmo -shape KelmoND1"), "headShape");
    EXPECT_EQ(Run("Kelmo -hasPreSkin") + Run("Kelmo -q -hts"), "10");
    told.text.clear();
    EXPECT_THAT(Run("Kelmo -create"), HasSubstr("Kelmo failed"));
    EXPECT_TRUE(told.Has("Error: KelmoCmd: node has Kelmo already connected\n"));
    EXPECT_EQ(Run("ls -type KelmoND"), "KelmoND1");
    // By selection of whatever is near it, by the editor, by name; else a query warns.
    for (const char* select :
         {"select head", "select headShape", "select head.vtx[1:3]", "select KelmoND1",
          "select skinCluster1", "select -cl; updateAE KelmoND1", "select -cl; updateAE head"}) {
        Must(select);
        EXPECT_EQ(Run("KelmoTarget -nodename"), "KelmoND1") << select;
    }
    Must("select -cl; updateAE nobody");
    told.text.clear();
    EXPECT_EQ(Run("KelmoTarget -q -totalnum"), "");
    EXPECT_TRUE(told.Has("Warning: KelmoTargetCmd: select Kelmo to display AE correctly.\n"));
    EXPECT_THAT(Run("KelmoTarget -load 0"), HasSubstr("failed"));
    EXPECT_THAT(Run("Kelmo -create"), HasSubstr("failed"));
    EXPECT_TRUE(told.Has("KelmoCmd: please select single mesh node\n"));
    EXPECT_EQ(Run("Kelmo -q -objsmit -node head"), "0");
}

TEST_F(CommandsTest, TheSkinGoesBeforeAndAfter) {
    Must(MeshKinds()[3] + "; select head; Kelmo -create");
    const std::vector<float> points = Points("headShape", "outMesh");
    const std::string before = Scene();
    EXPECT_THAT(Run("Kelmo -skinAfter"), HasSubstr("failed"));
    EXPECT_TRUE(told.Has("Error: KelmoCmd: there is not Skin after Kelmo.\n"));
    Must("Kelmo -skinBefore");
    EXPECT_EQ(Run("Kelmo -hps") + Run("Kelmo -hts"), "01");
    EXPECT_EQ(Run("listConnections -s 1 -d 0 -type KelmoND headShape"), "") << "the tweak is last";
    ExpectShape(points, "before the skin");
    ASSERT_TRUE(host.undo.Undo());
    EXPECT_TRUE(Scene() == before);
    Must("Kelmo -skinBefore; Kelmo -skinAfter");
    EXPECT_EQ(Run("Kelmo -hps") + Run("Kelmo -hts"), "10");
    ExpectShape(points, "behind the skin");
    // The node stands right behind the skin now; what stood between comes after it.
    EXPECT_EQ(Run("listConnections -s 1 -d 0 KelmoND1"), "skinCluster1 skinCluster1 time1");
}

TEST_F(CommandsTest, LevelsTargetsAndTheNeutral) {
    Must("polySphere -n ball; Kelmo -create");
    EXPECT_EQ(Run("KelmoSubdivs -q -total"), "1");
    EXPECT_EQ(Run("KelmoSubdivs -newsubdiv"), "1");
    EXPECT_EQ(Run("KelmoSubdivs -q -total") + Run("KelmoSubdivs -q -active"), "21");
    EXPECT_EQ(Run("KelmoSubdivs -q -nfaces 1"), "3120");
    EXPECT_EQ(Run("KelmoSubdivs -active 0; KelmoSubdivs -q -active"), "0");
    EXPECT_EQ(Run("KelmoSubdivs -outputLevel 1; KelmoSubdivs -q -outputLevel"), "1");
    ASSERT_TRUE(host.undo.Undo());
    EXPECT_EQ(Run("KelmoSubdivs -q -outputLevel"), "0") << "a setting is a step of undo";
    EXPECT_EQ(Run("KelmoSubdivs -delsubdiv"), "1");
    EXPECT_EQ(Run("KelmoSubdivs -q -total"), "1");

    EXPECT_EQ(Run("KelmoTarget -q -tn") + Run("KelmoTarget -q -sn"), "1717");
    Must("setAttr KelmoND1.commnad 0; setAttr KelmoND1.execute 1");
    Sculpt("KelmoND1");
    EXPECT_EQ(Run("KelmoTarget -q -iszero 3"), "1");
    Must("KelmoTarget -load 3; KelmoTarget -name 3 pout; Kelmo -zerowork");
    EXPECT_EQ(Run("KelmoTarget -q -iszero 3") + Run("KelmoTarget -q -name 3"), "0pout");
    Must("KelmoTarget -newtarg");
    EXPECT_EQ(Run("KelmoTarget -q -extnum") + Run("KelmoTarget -q -name 17"), "1ext 0");
    Must("KelmoTarget -deltarg 17; KelmoTarget -delta 3; KelmoTarget -clear 3");
    EXPECT_EQ(Run("KelmoTarget -q -totalnum") + Run("KelmoTarget -q -iszero 3"), "171");
    told.text.clear();
    Must("KelmoTarget -load 40");
    EXPECT_TRUE(told.Has("KelmoNode2: there is no target with such index.")) << told.text;
    EXPECT_THAT(Run("KelmoTarget -q -name"), HasSubstr("failed"));
    EXPECT_TRUE(told.Has("Error: KelmoTargetCmd: can not get parameter\n")) << told.text;
    Run("KelmoTarget -load many");
    EXPECT_TRUE(told.Has("Error: KelmoTargetCmd: can not parse arguments\n")) << told.text;

    Must("KelmoNeutral -load 0");
    EXPECT_EQ(Run("KelmoNeutral -q -iszero"), "0");
    Must("KelmoNeutral -clear 0");
    EXPECT_EQ(Run("KelmoNeutral -q -iszero"), "1");
}

TEST_F(CommandsTest, UndoTakesAStrokeBack) {
    Must(
        "polySphere -n ball; Kelmo -create; setAttr KelmoND1.commnad 0; setAttr KelmoND1.execute "
        "1");
    const auto surface = [&] {
        Must("undoInfo -state 0; Kelmo -exportDelta");
        const std::vector<float> points = Points("KelmoND1MeshShape", "outMesh");
        Must("delete KelmoND1Mesh; select ball; undoInfo -state 1");
        return points;
    };
    const std::vector<float> smooth = surface();
    Sculpt("KelmoND1");
    const std::vector<float> once = surface();
    ASSERT_NE(once, smooth);
    Sculpt("KelmoND1");
    ASSERT_NE(surface(), once);
    ASSERT_TRUE(host.undo.Undo());
    EXPECT_EQ(surface(), once);
    ASSERT_TRUE(host.undo.Undo());
    EXPECT_EQ(surface(), smooth);
    Must("select -cl");
    EXPECT_THAT(Run("KelmoStroke"), HasSubstr("failed"));
}

/// What points were moved by goes into the sculpt, in a session and out of one; the mesh looks the
/// same before and after.
TEST_F(CommandsTest, TweaksAreMerged) {
    for (const bool inSession : {false, true}) {
        host.NewScene();
        Must(MeshKinds()[3] + "; select head; Kelmo -create");
        const std::string node = Run("$n = `ls -type KelmoND`; $n[0]");
        std::vector<float> wanted = Points("headShape", "outMesh");
        if (inSession) Do(0, node);
        Must("setAttr tweak1.vlist[0].vertex[7].xVertex 0.5");
        Do(132, node);
        if (inSession) Do(1, node);
        for (const char* vertex : {"5", "7"})
            EXPECT_EQ(Run(std::string("getAttr tweak1.vlist[0].vertex[") + vertex + "]"), "0 0 0");
        wanted[3 * 7] += 0.5f;
        ExpectShape(wanted, inSession ? "in a session" : "outside");
        Do(132, node);
        ExpectShape(wanted, "nothing is left to merge");
    }
}

/// Beside the mesh a proxy shows its base level; a skin behind the node moves the proxy, and goes
/// back when it goes. Undo takes each step back.
TEST_F(CommandsTest, AProxyShowsTheBaseLevel) {
    for (const bool skinned : {false, true}) {
        host.NewScene();
        Must("polySphere -n head; select head; Kelmo -create");
        if (skinned) Must("createNode joint -n a; skinCluster a head; select head");
        const std::vector<float> base = Points("headShape", "outMesh");
        Must(
            "setAttr KelmoND1.forceRenderTopLevel 0; KelmoSubdivs -newsubdiv;"
            "setAttr KelmoND1.numRenderSubdivLvls 1");
        EXPECT_EQ(Run("Kelmo -q -proxy"), "0");
        const std::string before = Scene();
        Must("Kelmo -proxy 1");
        EXPECT_EQ(Run("Kelmo -q -proxy"), "1");
        EXPECT_EQ(Points("proxyShape", "outMesh"), base);
        EXPECT_EQ(Run("listRelatives -parent proxy"), "head");
        if (skinned) {
            Must("setAttr a.translateX 2");
            EXPECT_EQ(Points("headShape", "outMesh")[0], base[0] + 2);
            Must("setAttr a.translateX 0");
        } else {
            EXPECT_GT(Points("headShape", "outMesh").size(), base.size());
        }
        const std::string with = Scene();
        Must("Kelmo -proxy 1");
        EXPECT_EQ(Scene(), with) << "there is one already";
        Must("Kelmo -proxy 0");
        EXPECT_EQ(Run("Kelmo -q -proxy"), "0");
        EXPECT_EQ(Scene(), before);
        Must("undo");
        EXPECT_EQ(Scene(), with);
    }
}

/// The node goes, and the mesh is what it was, or with -zerotweak what it had become.
TEST_F(CommandsTest, NodesAreDeletedAndPurged) {
    for (const std::string& kind : MeshKinds())
        for (const bool keep : {false, true}) {
            host.NewScene();
            Must(kind + "; select head");
            const std::vector<float> plain = Points("headShape", "outMesh");
            const std::string node = Run("Kelmo -create");
            Must("setAttr " + node + ".commnad 0; setAttr " + node + ".execute 1");
            Sculpt(node);
            Must("setAttr " + node + ".commnad 1; setAttr " + node + ".execute 1");
            const std::vector<float> sculpted = Points("headShape", "outMesh");
            const std::string before = Scene();
            Must(keep ? "Kelmo -purgethis -zerotweak" : "Kelmo -delete");
            EXPECT_EQ(Run("ls -type KelmoND"), "");
            ExpectShape(keep ? sculpted : plain, kind);
            ASSERT_TRUE(host.undo.Undo());
            EXPECT_TRUE(Scene() == before) << kind;
            ExpectShape(sculpted, kind + " undone");
        }
    EXPECT_THAT(Run("Kelmo -purge time1"), HasSubstr("failed"));
    Must("polySphere -n other; Kelmo -addmulti; Kelmo -purgeall");
    EXPECT_EQ(Run("ls -type KelmoND"), "");
}

/// What has no UVs is refused, with a message to press a button on.
TEST_F(CommandsTest, AddsNodesToWhatHasUVs) {
    const std::string bare = folder / "bare.obj";
    std::ofstream(bare) << "o bare\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    Must("file -import \"" + bare + "\"; polySphere -n a; polySphere -n b; select bare a b");
    EXPECT_EQ(Run("Kelmo -checkuvs -node bare") + Run("Kelmo -cuv -no a"), "01");
    EXPECT_EQ(Run("size(`Kelmo -addmulti`)"), "2");
    EXPECT_TRUE(told.Has("Can not create Kelmo Node - no UV set is present")) << told.text;
    EXPECT_EQ(Run("Kelmo -addmulti"), "");
}

/// A scene keeps a node's state, once; an old node in it becomes a new one, with all it had.
TEST_F(CommandsTest, ScenesBringNodesBack) {
    for (const char* ending : {".mhs", ".mhb"}) {
        host.NewScene();
        const std::string scene = (folder / (std::string("scene") + ending)).string();
        Must(
            "polySphere -n ball; Kelmo -create; KelmoSubdivs -newsubdiv; KelmoTarget -name 2 oh;"
            "setAttr KelmoND1.brushSmoothIterations 7; file -rename \"" +
            scene + "\"; file -save");
        EXPECT_EQ(Plug("KelmoND1", "blindData").asMObject().isNull(), false);
        Must("file -new; file -open \"" + scene + "\"; select ball");
        for (const minihost::ScriptError& error : host.interpreter.RunDeferred())
            ADD_FAILURE() << error.Text();
        EXPECT_EQ(Run("KelmoSubdivs -q -total") + Run("KelmoTarget -q -name 2"), "2oh");
        EXPECT_EQ(Run("getAttr KelmoND1.brushSmoothIterations"), "7");
        Must("file -import -namespace second \"" + scene + "\"; select second:ball");
        EXPECT_EQ(Run("KelmoSubdivs -q -total") + Run("KelmoSubdivs -nodename"),
                  "2second:KelmoND1");
    }
    host.NewScene();
    const std::string scene = (folder / "old.mhs").string();
    Must(
        "polySphere -n ball; KelmoNew -isdeformer -geometry ball; KelmoTime -kelmo Kelmo1;"
        "setAttr Kelmo1.brushSmoothIterations 7; setAttr Kelmo1.blendTarg 3;"
        "setKeyframe Kelmo1.subTracks[2]; createNode transform -name after;"
        "connectAttr Kelmo1.SSAOradius after.tx");
    const std::vector<float> points = Points("ballShape", "outMesh");
    Must("file -rename \"" + scene + "\"; file -save; file -open \"" + scene + "\"");
    EXPECT_EQ(Run("nodeType Kelmo1"), "KelmoND");
    EXPECT_EQ(Run("getAttr Kelmo1.brushSmoothIterations") + Run("getAttr Kelmo1.blendTarg"), "73");
    EXPECT_EQ(Run("listConnections -s 1 -d 0 Kelmo1"),
              "tweak1 polySphere1 time1 Kelmo1_subTracks2");
    EXPECT_EQ(Run("listConnections -s 0 -d 1 Kelmo1"), "ballShape after");
    EXPECT_EQ(Points("ballShape", "outMesh"), points);
    EXPECT_EQ(Run("ls -type objectSet"), "initialShadingGroup tweak1Set")
        << "the old deformer's set is gone";
}

TEST_F(CommandsTest, RendersAndTellsOfItself) {
    EXPECT_EQ(Run("KelmoVersion -version") + Run("KelmoVersion -q -vi"), "v 6.5.036503");
    EXPECT_EQ(Run("Kelmo -q -version") + Run("Kelmo -vi"), "v 6.5.036503");
    EXPECT_EQ(Run("Kelmo -buildDate"), "Tue 08/21/2012");
    host.views.Disable();
    EXPECT_EQ(Run("KelmoDiag -gl"), "\nOpenGL is not supported.\n");
    host.views.Enable();
    if (host.views.Begin().empty()) {
        EXPECT_THAT(Run("KelmoDiag -gl"), StartsWith("\nOpenGL metrics:\nGL_VERSION   "));
        EXPECT_THAT(Run("KelmoDiag -gl"), EndsWith("\nGL_EXT_framebuffer_object\n"));
    }
    EXPECT_EQ(Run("global proc KelmoDiagnostic() { print \"looked\"; } KelmoDiag"), "");
    EXPECT_THAT(told.text, EndsWith("looked"));
    Must(
        "setAttr -type \"string\" defaultRenderGlobals.postMel tidy; polySphere -n ball;"
        "Kelmo -create; setAttr KelmoND1.commnad 0; setAttr KelmoND1.execute 1");
    EXPECT_EQ(Run("getAttr defaultRenderGlobals.preMel"), "KelmoRender -preRender");
    EXPECT_EQ(Run("getAttr defaultRenderGlobals.postMel"), "tidy; KelmoRender -postRender");
    Must("KelmoRender -preRender");
    EXPECT_EQ(Plug("KelmoND1", "commnad").asInt(), 113);
    Must("KelmoRender -preRenderFrame");
    EXPECT_EQ(Plug("KelmoND1", "commnad").asInt(), 248);
    Must("KelmoRender -postRender");
    EXPECT_EQ(Plug("KelmoND1", "commnad").asInt(), 114);
}

}  // namespace
}  // namespace kelmo
