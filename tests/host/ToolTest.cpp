#include "tests/host/ToolFixture.h"

#include <gmock/gmock.h>

#include "host/tools/ToolFlags.h"
#include "tests/host/Replayed.h"
#include "tests/system/Program.h"

// The sculpt tool in a view without a window: what the pointer does becomes strokes.

namespace kelmo {
namespace {

using namespace VantrelSDK;

LPoint3 Single(const MPoint& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

/// Of the brushes: a share of the view's width.
constexpr double kSize = 0.0625;

class ToolTest : public ToolFixture {
  protected:
    LPoint3 Triple(const char* x, const char* y, const char* z) {
        return {Plug("k", x).asFloat(), Plug("k", y).asFloat(), Plug("k", z).asFloat()};
    }
    LPoint3 Normal() {
        const MPlug normal = Plug("k", "brushNorm");
        return {normal.child(0).asFloat(), normal.child(1).asFloat(), normal.child(2).asFloat()};
    }
    LPoint2 Screen() { return {Plug("k", "screenx").asFloat(), Plug("k", "screeny").asFloat()}; }

    /// What a log would say of a press: worked out from the view's camera, not from the tool.
    PressOp LoggedPress(int mode, int x, int y, double size) {
        M3dView view = M3dView::active3dView();
        MPoint origin, beside;
        MVector dir, besideDir;
        view.viewToWorld(static_cast<short>(x), static_cast<short>(y), origin, dir);
        const int width = view.portWidth(), pixels = static_cast<int>(width * size);
        view.viewToWorld(static_cast<short>(x > width / 2 ? x - pixels : x + pixels),
                         static_cast<short>(y), beside, besideDir);
        const MPoint place = Place();
        const double radius = (beside + besideDir * (place - beside).length() - place).length();
        PressOp press;
        press.mode = mode;
        press.pos = Triple("startX", "startY", "startZ");
        MDagPath camera;
        view.getCamera(camera);
        const MMatrix seen = camera.inclusiveMatrix();
        // The view's horizontal, across the ray.
        const MVector right(seen(0, 0), seen(0, 1), seen(0, 2)),
            down = (dir ^ right).normal(), across = (dir.normal() ^ down).normal();
        const MPoint start(press.pos.x, press.pos.y, press.pos.z);
        press.dir = Single(MPoint(dir));
        press.orth = Single(MPoint(-across));
        press.radius = static_cast<float>(start.distanceTo(start + across * radius));
        press.normal = Normal();
        press.screen = Screen();
        return press;
    }
    MoveOp LoggedMove() {
        MoveOp move;
        move.pos = Single(Place());
        move.screen = Screen();
        move.normal = Normal();
        return move;
    }
    static void ExpectReplay(const std::vector<float>& sculpted, const std::vector<StrokeOp>& log,
                             int level) {
        const std::vector<float> wanted = Replayed(kHead, log, level);
        ASSERT_EQ(sculpted.size(), wanted.size());
        for (size_t i = 0; i < wanted.size(); ++i) ASSERT_EQ(sculpted[i], wanted[i]) << i;
    }
    /// A stroke, and what a log says of it.
    std::vector<StrokeOp> LoggedStroke(int mode, Places places) {
        Must("KelmoToolContext -edit -brushMode " + std::to_string(mode) + " KelmoToolContext1");
        std::vector<StrokeOp> log;
        for (const auto& [x, y] : places) {
            if (log.empty()) {
                EXPECT_TRUE(Press(x, y));
                EXPECT_TRUE(InStroke());
                log.push_back(LoggedPress(mode, x, y, kSize));
            } else {
                Drag(x, y);
                log.push_back(LoggedMove());
            }
        }
        Release((places.end() - 1)->first, (places.end() - 1)->second);
        EXPECT_FALSE(InStroke());
        log.push_back(ReleaseOp{});
        return log;
    }
};

TEST_F(ToolTest, AStrokeIsTheReplayOfItsLogBitForBit) {
    for (const int levels : {0, 1}) {
        for (int i = 0; i < levels; ++i) Do(97);
        TakeTool();
        const std::vector<float> before = Surface();
        std::vector<StrokeOp> log(static_cast<size_t>(levels), SubdivideOp{SubdivideKind::Quad});
        for (const int curve : {1, 2}) log.push_back(FalloffOp{curve, {{0, 1}, {1, 0}}});
        for (const int mode : {8, 0, 2, 4, 12, 9, 16, 6, 1}) {
            // Out over the edge of the head and back: the brush keeps its depth there.
            const auto stroke = LoggedStroke(
                mode, {{200, 150}, {204, 152}, {210, 160}, {230, 170}, {390, 170}, {215, 140}});
            log.insert(log.end(), stroke.begin(), stroke.end());
        }
        const std::vector<float> sculpted = Surface();
        EXPECT_NE(sculpted, before);
        ExpectReplay(sculpted, log, levels);
        // And the host's undo takes them back, one by one, to the bit.
        for (int i = 0; i < 9; ++i) Must("undo");
        EXPECT_EQ(Surface(), before);
        LeaveTool();
    }
}

/// The same where rays spread from the eye.
TEST_F(ToolTest, InAPerspectiveViewToo) {
    Look("persp", 500, 400);
    TakeTool();
    std::vector<StrokeOp> log;
    for (const int curve : {1, 2}) log.push_back(FalloffOp{curve, {{0, 1}, {1, 0}}});
    for (const int mode : {8, 0, 1, 3, 15}) {
        const auto stroke =
            LoggedStroke(mode, {{230, 190}, {236, 195}, {250, 200}, {490, 210}, {270, 230}});
        log.insert(log.end(), stroke.begin(), stroke.end());
    }
    ExpectReplay(Surface(), log, 0);
}

TEST_F(ToolTest, TheBrushLiesWhereThePointerIs) {
    TakeTool();
    M3dView view = M3dView::active3dView();
    for (const auto& [x, y] : {std::pair{200, 150}, {150, 200}, {230, 110}, {20, 20}}) {
        Press(x, y);
        Release(x, y);
        short seenx = 0, seeny = 0;
        view.worldToView(Place(), seenx, seeny);
        EXPECT_NEAR(seenx, x, 1);
        EXPECT_NEAR(seeny, y, 1);
        EXPECT_EQ(Plug("k", "screenx").asFloat(), static_cast<float>((x - 200) / 200.));
        EXPECT_EQ(Plug("k", "screeny").asFloat(), static_cast<float>((y - 150) / 150.));
    }
    // At a corner, and beyond.
    for (const auto& [x, y, sx, sy] :
         {std::tuple{400, 300, 1, 1}, {0, 0, -1, -1}, {900, -900, 1, -1}}) {
        Press(x, y);
        Release(x, y);
        EXPECT_EQ(Plug("k", "screenx").asFloat(), sx);
        EXPECT_EQ(Plug("k", "screeny").asFloat(), sy);
    }
}

TEST_F(ToolTest, BesideTheSurfaceTheBrushKeepsItsDepth) {
    TakeTool();
    Must("KelmoToolContext -edit -brushMode 8 KelmoToolContext1");
    Press(200, 150);
    Drag(210, 150);
    const double depth = Place().z;
    for (const int x : {390, 395, 399}) {
        Drag(x, 290);
        EXPECT_NEAR(Place().z, depth, 1e-6);
    }
    Release(399, 290);
}

TEST_F(ToolTest, AMovedAndScaledObjectIsSculptedWhereItIsSeen) {
    Must("move 3 1 -2 shown; rotate 0 30 0 shown; scale 0.5 0.5 0.5 shown");
    Look("front", 400, 300);
    TakeTool();
    const std::vector<float> before = Surface();
    Must("KelmoToolContext -edit -brushMode 8 KelmoToolContext1");
    Stroke({{200, 150}, {205, 150}, {210, 150}});
    const std::vector<float> after = Surface();
    // What moved lies about the brush.
    const MMatrix world = MDagPath(MObject(host.scene.Find("shown"))).inclusiveMatrix();
    int moved = 0;
    for (size_t i = 0; i < after.size(); i += 3) {
        if (std::equal(&after[i], &after[i] + 3, &before[i])) continue;
        ++moved;
        const MPoint at = MPoint(after[i], after[i + 1], after[i + 2]) * world;
        EXPECT_LT((at - Place()).length(), 3);
    }
    EXPECT_GT(moved, 5);
}

TEST_F(ToolTest, TheResizeKeyChangesTheSizeAndStartsNoStroke) {
    TakeTool();
    const auto size = [&] { return Plug("k", "toolSize").elementByLogicalIndex(8).asFloat(); };
    Must("KelmoToolContext -edit -brushMode 8 -resizeTool 1 KelmoToolContext1");
    EXPECT_TRUE(IsOutlined());
    Press(200, 150);
    EXPECT_FALSE(InStroke());
    Drag(240, 150);
    EXPECT_FLOAT_EQ(size(), 0.0625f + 40 / 400.f);
    Drag(240, 180);
    EXPECT_FLOAT_EQ(size(), 0.0625f + 40 / 400.f - 30 / 300.f);
    Drag(0, 180);
    EXPECT_FLOAT_EQ(size(), 0.0001f) << "it never goes to nothing";
    Release(0, 180);
    EXPECT_EQ(Run("KelmoToolContext -query -resizeTool KelmoToolContext1"), "0");
    EXPECT_EQ(Run("undoInfo -query -undoName").find("KelmoStroke"), std::string::npos);
    // After the release the button sculpts again.
    Press(200, 150);
    EXPECT_TRUE(InStroke());
    Release(200, 150);
}

TEST_F(ToolTest, OnlyTheLeftButtonSculpts) {
    TakeTool();
    MEvent middle = At(200, 150, 0, MEvent::kMiddleMouse);
    tool().doPress(middle);
    EXPECT_FALSE(InStroke());
    Press(200, 150, MEvent::middleMouseButton);
    EXPECT_FALSE(InStroke());
    Press(200, 150);
    EXPECT_TRUE(InStroke());
    tool().doRelease(middle);
    EXPECT_TRUE(InStroke());
    Release(200, 150);
    EXPECT_FALSE(InStroke());
}

/// Shift and Ctrl make other modes of the one that was chosen.
TEST_F(ToolTest, ModifiersAreThoseOfTheEvents) {
    TakeTool();
    const std::vector<float> before = Surface();
    const auto sculpted = [&](int mode, unsigned modifiers) {
        Must("KelmoToolContext -edit -brushMode " + std::to_string(mode) + " KelmoToolContext1");
        Stroke({{200, 150}, {204, 152}, {212, 158}}, modifiers);
        const std::vector<float> after = Surface();
        Must("undo");
        EXPECT_EQ(Surface(), before) << mode;
        return after;
    };
    EXPECT_EQ(sculpted(8, MEvent::controlKey), sculpted(9, 0));
    EXPECT_EQ(sculpted(8, MEvent::shiftKey), sculpted(12, 0));
    EXPECT_NE(sculpted(8, 0), sculpted(9, 0));
}

TEST_F(ToolTest, ADragModeMarksThePress) {
    TakeTool();
    for (const auto& [mode, shape] : {std::pair{1, 0}, {2, 1}, {4, 1}, {6, 0}}) {
        Must("KelmoToolContext -edit -brushMode " + std::to_string(mode) + " KelmoToolContext1");
        Press(200, 150);
        EXPECT_EQ(Count("kelmoTool"), 2);
        Drag(230, 150);
        EXPECT_FALSE(IsOutlined());
        EXPECT_TRUE(Plug(Locators().at(1), "visibility2").asBool());
        EXPECT_EQ(Plug(Locators().at(1), "brushShape").asInt(), shape) << mode;
        Release(230, 150);
        EXPECT_EQ(Count("kelmoTool"), 1);
        EXPECT_TRUE(IsOutlined());
    }
}

TEST_F(ToolTest, WithCtrlTheCloneBrushSetsItsSource) {
    TakeTool();
    const std::vector<float> before = Surface();
    Must("KelmoToolContext -edit -brushMode 18 KelmoToolContext1");
    Stroke({{200, 150}, {210, 150}}, MEvent::controlKey);
    Stroke({{220, 150}, {230, 150}});
    EXPECT_EQ(Surface(), before);
}

/// Whoever leaves the tool in the middle of a stroke keeps it; Escape takes it back.
TEST_F(ToolTest, AStrokeEndsWithTheToolOrIsTakenBack) {
    TakeTool();
    const std::vector<float> before = Surface();
    Must("KelmoToolContext -edit -brushMode 8 KelmoToolContext1");
    Press(200, 150);
    Drag(210, 150);
    tool().abortAction();
    EXPECT_FALSE(InStroke());
    Release(210, 150);
    EXPECT_EQ(Surface(), before);
    for (int strokes = 0; strokes < 2; ++strokes) {
        Stroke({{180, 150}, {190, 150}});
        const std::vector<float> between = Surface();
        Press(200, 150);
        Drag(210, 150);
        Must("undo");
        EXPECT_FALSE(InStroke());
        Drag(220, 150);
        Release(220, 150);
        EXPECT_EQ(Surface(), between) << "undo in a stroke takes that one back";
    }
    Must("undo; undo");
    EXPECT_EQ(Surface(), before);
    Press(200, 150);
    Drag(210, 150);
    LeaveTool();
    EXPECT_FALSE(InStroke());
    EXPECT_EQ(Count("kelmoTool"), 0);
    EXPECT_EQ(Count("KelmoSurface"), 0);
    TakeTool();
    EXPECT_NE(Surface(), before);
}

TEST_F(ToolTest, ASessionThatAScriptClosedOpensWithThePress) {
    TakeTool();
    Do(1);
    EXPECT_EQ(Count("KelmoSurface"), 0);
    EXPECT_TRUE(Press(200, 150));
    EXPECT_EQ(Count("KelmoSurface"), 1);
    EXPECT_TRUE(InStroke());
    Release(200, 150);
}

/// Where something else is connected there is no stroke, nothing to undo, and nothing is cut.
TEST_F(ToolTest, AStrokeOfAnotherIsLeftAlone) {
    TakeTool();
    Must("KelmoToolContext -edit -brushMode 2 KelmoToolContext1");
    Must("createNode locator -name other; connectAttr other.matrix k.brush");
    EXPECT_FALSE(Press(200, 150));
    EXPECT_TRUE(told.Has("KelmoToolContext: can not connect locator"));
    Release(200, 150);
    EXPECT_TRUE(InStroke());
    EXPECT_EQ(Count("kelmoTool"), 1);
    EXPECT_EQ(Run("undoInfo -query -undoName").find("KelmoStroke"), std::string::npos);
    Must("disconnectAttr other.matrix k.brush");
}

TEST_F(ToolTest, WithNoNodeItWaitsForOne) {
    Must("select -clear; polyCube -name box");
    TakeTool();
    EXPECT_TRUE(told.Has("KelmoToolContext: can not find Kelmo node."));
    EXPECT_EQ(Count("kelmoTool"), 0);
    EXPECT_FALSE(Press(200, 150));
    Drag(210, 150);
    Release(210, 150);
    EXPECT_TRUE(told.Has("KelmoToolContext: no deformer node"));
    Must("select shown");
    EXPECT_EQ(Count("kelmoTool"), 1);
    EXPECT_TRUE(Press(200, 150));
    Release(200, 150);
    LeaveTool();
}

TEST_F(ToolTest, ItFollowsTheSelectionToAnotherMesh) {
    Must("polySphere -radius 4 -name other; Kelmo -create");
    Must("select shown");
    TakeTool();
    const auto sculpting = [&](const std::string& mesh) {
        return Run("size(`listRelatives -shapes " + mesh + "`)") == "2";
    };
    EXPECT_TRUE(sculpting("shown") && !sculpting("other"));
    Must("select other");
    EXPECT_TRUE(sculpting("other") && !sculpting("shown"));
    // Not away from it by what is no mesh of ours, and not in a stroke.
    Must("select -clear");
    EXPECT_TRUE(sculpting("other"));
    Press(200, 150);
    Must("select shown");
    EXPECT_TRUE(sculpting("other"));
    Release(200, 150);
    EXPECT_TRUE(sculpting("shown"));
}

TEST_F(ToolTest, NodesAndScenesMayGoWhileItIsOn) {
    TakeTool();
    Press(200, 150);
    Drag(210, 150);
    Must("delete k");
    Drag(220, 150);
    Release(220, 150);
    EXPECT_FALSE(Press(200, 150));
    Must("undo");
    host.NewScene();
    EXPECT_EQ(Run("currentCtx"), "selectSuperContext");
    EXPECT_EQ(Count("kelmoTool"), 0);
    // A scene that is saved while the tool is on has no locators of it.
    MakeNode(kHead);
    Output();
    Must("select shown");
    TakeTool();
    const std::string path = folder / "saved.ma";
    Must("file -rename \"" + path + "\"; file -save");
    EXPECT_EQ(Count("kelmoTool"), 1);
    Must("file -open -force \"" + path + "\"");
    EXPECT_EQ(Run("currentCtx"), "selectSuperContext");
    EXPECT_EQ(Count("kelmoTool"), 0);
    EXPECT_EQ(Count("KelmoND"), 1);
}

TEST_F(ToolTest, TimeAndRendersLeaveIt) {
    for (const char* leave : {"currentTime 5", "KelmoRender -preRender"}) {
        Must("select shown");
        TakeTool();
        Press(200, 150);
        Drag(204, 150);
        Release(204, 150);
        Run(leave);
        EXPECT_EQ(Run("currentCtx"), "selectSuperContext") << leave;
    }
}

/// A stroke is one step of the host's undo, between other edits.
TEST_F(ToolTest, StrokesAreUndoneInTheirOrder) {
    TakeTool();
    const std::vector<float> before = Surface();
    Must("KelmoToolContext -edit -brushMode 8 KelmoToolContext1; polyCube -name box");
    Stroke({{200, 150}, {205, 150}, {210, 150}});
    Must("move 1 2 3 box");
    Must("undo");
    EXPECT_NE(Surface(), before);
    Must("undo");
    EXPECT_EQ(Surface(), before);
    EXPECT_EQ(Run("size(`ls box`)"), "1");
    Must("undo");
    EXPECT_EQ(Run("size(`ls box`)"), "0");
}

class ToolFlagsTest : public ToolTest {
  protected:
    std::string Query(const std::string& flag) {
        return Run("KelmoToolContext -query -" + flag + " KelmoToolContext1");
    }
    void Edit(const std::string& flags) {
        Must("KelmoToolContext -edit " + flags + " KelmoToolContext1");
    }
};

/// A flag and the plug that it is of.
struct FlagPlug {
    const char *flag, *plug;
};

TEST_F(ToolFlagsTest, SetAndTellPlugs) {
    constexpr FlagPlug kOn[] = {{"uf", "useFalloff"},           {"uf2", "useFalloff2"},
                                {"acc", "accumulate"},          {"sys", "doSymmetrySnapping"},
                                {"prr", "randPatternRotation"}, {"pro", "randPatternOffset"},
                                {"prs", "randPatternScale"},    {"p2m", "alignToMotion"},
                                {"pch", "useChainPatterns"},    {"csa", "colorAsAlpha"},
                                {"prc", "projectiveConstrain"}, {"pem", "porjEditMush"},
                                {"prf", "projectiveTilingFit"}, {"qfn", "quickFlatten"},
                                {"avg", "affectGeometry"},      {"avc", "affectVertColor"},
                                {"avs", "affectStencil"},       {"avt", "affectTexture"},
                                {"ats", "affectTexStencil"},    {"ste", "useStencil"},
                                {"uwn", "underNorm"},           {"uwt", "underTangs"},
                                {"uws", "underSkin"},           {"uvd", "underSkinSolid"},
                                {"uwv", "underVect"},           {"gls", "useShaders"},
                                {"spe", "useSpecular"},         {"dif", "useDiffuse"},
                                {"cbf", "cullBackface"},        {"txs", "showTextures"},
                                {"bds", "bakeDispDoStren"},     {"bdd", "bakeDispDoDirs"},
                                {"ric", "refimageConstrain"}};
    constexpr FlagPlug kNumbers[] = {{"symmetrySnapRadius", "symmetrySnapRadius"},
                                     {"patternMaxOffset", "maxPatternOffset"},
                                     {"patternMinScale", "minPatternScale"},
                                     {"patternMaxScale", "maxPatternScale"},
                                     {"projPatternWidht", "projectiveSize.0"},
                                     {"projPatternHeight", "projectiveSize.1"},
                                     {"projPatternOpac", "projectiveOpac"},
                                     {"uvsetPatternOpac", "uvsetpatternOpac"},
                                     {"vertexcolor_r", "vertexPaintColor.0"},
                                     {"vertexcolor_g", "vertexPaintColor.1"},
                                     {"vertexcolor_b", "vertexPaintColor.2"},
                                     {"specularStren", "specularStren"},
                                     {"objOpacity", "objectOpacity"},
                                     {"SSAOrad", "SSAOradius"},
                                     {"textureOpacity", "textureOpac"},
                                     {"refImgWidht", "refimageSize.0"},
                                     {"refImgHeight", "refimageSize.1"},
                                     {"refImgOpac", "refimageOpac"},
                                     {"blendtarg", "blendTarg"},
                                     {"blendspace", "blendSpace"},
                                     {"pushPullMode", "pushPullMode"},
                                     {"symmetry", "symmetry"},
                                     {"patternMaxRotation", "maxPatternRotation"},
                                     {"patternMode", "patternMode"},
                                     {"patternUVchannel", "patternUVchannel"},
                                     {"channel", "texChannel"},
                                     {"displayMode", "displayMode"},
                                     {"shadowFilter", "shadowFilter"},
                                     {"SSAOsamples", "SSAOsamples"},
                                     {"bakeTexWidth", "bakeTexSize.0"},
                                     {"bakeTexHeight", "bakeTexSize.1"},
                                     {"bakeNormsUVchan", "bakeTexUVChannel"},
                                     {"bakeNormsSpace", "bakeNormalSpace"},
                                     {"bakeNormsLevel", "bakeNormalLevel"},
                                     {"bakeDispStrenRange", "bakeDispStrenRange"},
                                     {"bakeDispDirSpace", "bakeDispDirSpace"},
                                     {"projPatternRot", "projectiveRot"},
                                     {"projPatternUTiling", "projectiveTiling.0"},
                                     {"projPatternVTiling", "projectiveTiling.1"},
                                     {"shadowAzm", "shadowAzm"},
                                     {"shadowAlt", "shadowAlt"},
                                     {"refImgRot", "refimageRot"}};
    const auto plugOf = [this](std::string name) {
        const size_t dot = name.find('.');
        const bool part = dot != name.npos;
        const unsigned child = part ? static_cast<unsigned>(name.back() - '0') : 0;
        name.resize(std::min(dot, name.size()));
        const MPlug plug = Plug("k", name);
        EXPECT_FALSE(plug.isNull()) << name;
        return part ? plug.child(child) : plug;
    };
    for (const auto& [flag, plug] : kOn)
        for (const char* value : {"1", "0"}) {
            Edit(std::string("-") + flag + " " + value);
            EXPECT_EQ(plugOf(plug).asBool(), *value == '1') << flag;
            EXPECT_EQ(Query(flag), value) << flag;
        }
    int next = 2;
    for (const auto& [flag, plug] : kNumbers) {
        const std::string value = std::to_string(++next);
        Edit(std::string("-") + flag + " " + value);
        EXPECT_EQ(plugOf(plug).asInt(), next) << flag;
        EXPECT_EQ(Query(flag), value) << flag;
    }
    for (const char* flag :
         {"bakeNormsFile", "bakeDispStrenFile", "bakeDispDirFile", "bakeVertColFile"}) {
        Edit(std::string("-") + flag + " \"" + flag + ".png\"");
        EXPECT_EQ(Query(flag), std::string(flag) + ".png");
    }
}

TEST(ToolFlags, ThePageHasThemAll) {
    const std::string page = kelmo_tests::Read(std::string(paths::kSource) + "/docs/module.md");
    EXPECT_EQ(ToolFlags().size(), 140u);
    for (const ToolFlag& flag : ToolFlags())
        EXPECT_NE(page.find(std::string("`-") + flag.brief + "` `-" + flag.name + "`"), page.npos)
            << flag.name;
}

TEST_F(ToolFlagsTest, WhatIsNotBuiltSaysSo) {
    for (const char* flag :
         {"projClearMush", "numRefImgs", "refImgEmpty", "refImgSwatch", "refImgSwatchFile",
          "loadRefImg", "refImgHit", "bakeNormals", "bakeDisplacement", "bakeVertColor",
          "imporvertcolor", "numposes", "nummix", "posename", "mixname", "brushImage"}) {
        told.text.clear();
        EXPECT_THAT(Query(flag), testing::StartsWith("error")) << flag;
        EXPECT_TRUE(told.Has(std::string("-") + flag + " is not part of this version"))
            << told.text;
    }
}

TEST_F(ToolFlagsTest, TellOfBrushesTargetsAndPaint) {
    TakeTool();
    Edit("-brushMode 12");
    EXPECT_EQ(Query("brushMode"), "12");
    EXPECT_EQ(Plug("k", "lastSculptMode2").asInt(), 12);
    EXPECT_EQ(Plug("k", "lastSculptMode1").asInt(), -1);
    EXPECT_THAT(Run("KelmoToolContext -edit -brushMode 20 KelmoToolContext1"),
                testing::StartsWith("error"));
    EXPECT_EQ(Query("brushMode"), "12");
    Edit("-iconSize 0.25");
    EXPECT_EQ(Plug("k", "toolSize").elementByLogicalIndex(12).asFloat(), 0.25f);
    Edit("-brushMode 3");
    Edit("-iconSize2 0.5");
    EXPECT_EQ(Plug("k", "toolSize").elementByLogicalIndex(12).asFloat(), 0.5f);
    EXPECT_EQ(Query("iconSize"), "0.0625");
    // The strength is that of what the brush affects.
    for (const auto& [affects, array] : {std::pair{"avg", "paintPressMult"},
                                         {"avs", "vertColorStrength"},
                                         {"avc", "vertColorStrength"},
                                         {"avt", "textureStrength"}}) {
        Edit(std::string("-avg 0 -avc 0 -avs 0 -avt 0"));
        Edit(std::string("-") + affects + " 1 -paintPressure 0.75");
        EXPECT_EQ(Plug("k", array).elementByLogicalIndex(3).asFloat(), 0.75f) << affects;
        EXPECT_EQ(Query("paintPressure"), "0.75");
        Plug("k", array).elementByLogicalIndex(3).setValue(0);
    }
    Edit("-avt 0 -avg 1");
    Edit("-falloff \"1,0,1,0.5,0.25,2,0,1,1\"");
    EXPECT_EQ(Query("falloff"), "1,0,1,0.5,0.25,2,0,1,1");
    for (const char* bad : {"", "1,0", "1,x,2", "1,0,9", "nan,0,1"}) {
        EXPECT_THAT(
            Run(std::string("KelmoToolContext -edit -falloff \"") + bad + "\" KelmoToolContext1"),
            testing::StartsWith("error"))
            << bad;
        EXPECT_EQ(Query("falloff"), "1,0,1,0.5,0.25,2,0,1,1");
    }
    Edit("-vertexcolor 0.5");
    EXPECT_EQ(Query("vertexcolor"), "0.5 0.5 0.5");
    Edit("-avs 1 -useShadow 1 -useSSAO 1");
    EXPECT_TRUE(Plug("k", "useShadow").elementByLogicalIndex(2).asBool());
    EXPECT_TRUE(Plug("k", "useSSAO").elementByLogicalIndex(2).asBool());
    Edit("-nameidx 2 -targname \"smile\"");
    EXPECT_EQ(Run("KelmoTarget -query -name 2"), "smile");
    EXPECT_EQ(Query("targname"), "smile");
    EXPECT_EQ(Query("numtargs"), Run("KelmoTarget -query -totalnum"));
    EXPECT_EQ(Query("numUVSets"), "1");
    EXPECT_EQ(Query("isMulti"), "0");
    EXPECT_THAT(Run("KelmoToolContext -edit -numtargs 4 KelmoToolContext1"),
                testing::StartsWith("error"));
}

}  // namespace
}  // namespace kelmo
