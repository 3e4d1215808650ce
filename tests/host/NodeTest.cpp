#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <set>

#include "core/io/ObjReader.h"
#include "tests/host/ModuleFixture.h"
#include "tests/host/Replayed.h"

// The node as a host's scripts know it: by its attributes, connections and numbered commands.

namespace kelmo {
namespace {

using VantrelSDK::LPoint3;

class NodeTest : public ModuleFixture {
  protected:
    struct Stroke {
        int mode;
        LPoint3 from;
        std::vector<LPoint3> moves;
        float radius;
    };

    /// The brush is a locator whose matrix is the tool's place; it looks along the head's depth.
    void Sculpt(const Stroke& stroke) {
        const auto number = [](float f) { return std::to_string(f); };
        Run("if (!size(`ls brush`)) createNode locator -name brush");
        std::string script = "setAttr k.sculptMode " + std::to_string(stroke.mode) +
                             "; setAttr k.brushNorm 0 0 1; setAttr k.toolSize[" +
                             std::to_string(stroke.mode) + "] " + number(stroke.radius) +
                             "; setAttr k.paintPressMult[" + std::to_string(stroke.mode) + "] 1;";
        const float start[3] = {stroke.from.x, stroke.from.y, stroke.from.z};
        for (int c = 0; c < 3; ++c)
            script += std::string("setAttr k.start") + "XYZ"[c] + " " + number(start[c]) + ";";
        script += "connectAttr brush.matrix k.brush;";
        for (const LPoint3& p : stroke.moves)
            script += "move " + number(p.x) + " " + number(p.y) + " " + number(p.z) + " brush;";
        Must(script + "disconnectAttr brush.matrix k.brush");
    }
    /// The same without a host: the surface of a level.
    static std::vector<float> Replay(const std::vector<Stroke>& strokes, int level,
                                     const VantrelSDK::Ramp& falloff = {{0, 1}, {1, 0}}) {
        using namespace VantrelSDK;
        std::vector<StrokeOp> ops(static_cast<size_t>(level), SubdivideOp{SubdivideKind::Quad});
        ops.push_back(FalloffOp{1, falloff});
        for (const Stroke& s : strokes) {
            PressOp press;
            press.mode = s.mode;
            press.pos = s.from;
            press.dir = {0, 0, -1};
            press.orth = {-1, 0, 0};
            press.normal = {0, 0, 1};
            press.radius = s.radius;
            ops.push_back(press);
            for (const LPoint3& p : s.moves) {
                MoveOp move;
                move.pos = p;
                move.normal = press.normal;
                ops.push_back(move);
            }
            ops.push_back(ReleaseOp{});
        }
        return Replayed(kHead, ops, level);
    }
    std::vector<Stroke> SomeStrokes() {
        VantrelSDK::PolyMesh mesh;
        VantrelSDK::FileError problem;
        VantrelSDK::ReadObj(kHead, mesh, problem);
        std::mt19937 random(7);
        std::vector<Stroke> strokes;
        for (const int mode : {8, 0, 4, 12, 9, 16, 2}) {
            // Six digits are what the scripts carry.
            const auto cut = [](float f) { return std::stof(std::to_string(f)); };
            const LPoint3 p = mesh.positions[random() % mesh.positions.size()];
            Stroke s{mode, {cut(p.x), cut(p.y), cut(p.z)}, {}, 3};
            for (int i = 1; i <= 4; ++i)
                s.moves.push_back(
                    {cut(s.from.x + 0.25f * i), cut(s.from.y + 0.125f * i), s.from.z});
            strokes.push_back(s);
        }
        return strokes;
    }
};

TEST_F(NodeTest, HasAllItsAttributesHidden) {
    Run("createNode KelmoND -name k; createNode Kelmo -name old; createNode transform -name t");
    for (const auto& [name, count] : {std::pair{"k", 180}, {"old", 170}}) {
        const MObject object(host.scene.Find(name));
        const MFnDependencyNode node(object);
        std::set<std::string> longNames, shortNames;
        std::vector<std::string> keyable;
        const std::string skip = name == std::string("old") ? "geometryFilter" : "dependNode";
        int own = 0;
        for (unsigned i = 0; i < node.attributeCount(); ++i) {
            const MFnAttribute attribute(node.attribute(i));
            if (!attribute.parent().isNull()) continue;
            if (host.types.Find(skip)->Find(attribute.name().asChar())) continue;
            ++own;
            EXPECT_TRUE(attribute.isHidden()) << attribute.name().asChar();
            EXPECT_TRUE(longNames.insert(attribute.name().asChar()).second);
            EXPECT_TRUE(shortNames.insert(attribute.shortName().asChar()).second);
            if (attribute.isKeyable()) keyable.push_back(attribute.name().asChar());
        }
        EXPECT_EQ(own, count) << name;
        EXPECT_THAT(keyable,
                    testing::UnorderedElementsAre("subTracks", "groupTracks", "mixTracks"));
    }
}

TEST_F(NodeTest, AWriteMakesStaleWhatItShould) {
    MakeNode(kHead);
    Do(97);
    const std::vector<std::pair<std::string, std::string>> writes{
        {"setAttr k.commnad 91; setAttr k.execute0 1", ""},
        {"setAttr k.commnad 9999; setAttr k.execute 1", "outputGeom outputProxy displayCbk "},
        {"setAttr k.commnad 9999; setAttr k.execute 1", "outputGeom outputProxy displayCbk "},
        {"currentTime 7", "outputGeom outputProxy "},
        {"setAttr " + source + ".pnts[3].pntx 0.1", "outputGeom outputProxy "},
        {"setAttr k.numRenderSubdivLvls 1", "outputGeom displayCbk "},
        {"setAttr k.forceRenderTopLevel 1", "outputGeom displayCbk "},
        {"setAttr k.displayMode 2", "displayCbk "},
        {"setAttr k.poseUseCache 1", "outputGeom displayCbk "},
        {"setAttr k.poseUseCache 0", "outputGeom displayCbk "},
        {"setAttr k.shadowAzm 30; setAttr k.toolSize[8] 4; setAttr k.symmetry 1", ""},
        {"setAttr k.falloff[1].falloff_Position 0.5", ""},
        {"setAttr k.mixTracks[2] 0.5", "outputGeom outputProxy displayCbk "},
        {"setAttr k.rbfScale 2", "outputGeom outputProxy "},
    };
    const auto node = host.scene.Find("k");
    const std::vector<const char*> outputs{"outputGeom", "outputProxy", "displayCbk"};
    for (const bool inSession : {false, true}) {
        if (inSession) Do(0);
        for (const auto& [write, wanted] : writes) {
            for (const char* output : outputs) Plug("k", output).asMObject();
            Must(write);
            std::string stale;
            for (const char* output : outputs)
                if (node->FindSlot(output)->dirty) stale += std::string(output) + " ";
            EXPECT_EQ(stale, wanted) << write;
        }
    }
}

/// While a session is open a surface stands where the mesh was; nothing of it is left when it
/// closes, nor in what is saved, nor when the node goes.
TEST_F(NodeTest, ASurfaceStandsInThePlaceOfTheMesh) {
    MakeNode(kHead);
    Output();
    const auto surfaces = [&] { return Run("size(`ls -type KelmoSurface`)"); };
    const auto shown = [&] { return Run("getAttr shownShape.visibility"); };
    for (int session = 0; session < 2; ++session) {
        EXPECT_EQ(surfaces() + shown(), "01");
        Do(0);
        EXPECT_EQ(surfaces() + shown(), "10");
        EXPECT_EQ(Run("listRelatives -parent `ls -type KelmoSurface`"), "shown");
        Do(0);
        EXPECT_EQ(surfaces(), "1") << "the session is open already";
        Do(1);
    }
    Must("setAttr shownShape.visibility 0");
    Do(0);
    Do(1);
    EXPECT_EQ(surfaces() + shown(), "00") << "what somebody has hidden stays so";
    Must("setAttr shownShape.visibility 1");
    Do(0);
    const std::string scene = (folder / "open.mhs").string();
    Must("file -rename \"" + scene + "\"; file -save");
    EXPECT_EQ(surfaces() + shown(), "10") << "the session goes on";
    Must("file -open \"" + scene + "\"");
    EXPECT_EQ(surfaces() + shown(), "01");
    Do(0);
    Must("delete k");
    EXPECT_EQ(shown(), "1");
    Must("undo");
    EXPECT_EQ(surfaces() + shown(), "10");
    Must("delete `ls -type KelmoSurface`");
    EXPECT_EQ(surfaces() + shown(), "01");
    Must("undo");
    EXPECT_EQ(surfaces() + shown(), "10");
    Must("Kelmo -purge k");
    EXPECT_EQ(surfaces() + shown(), "01");
}

/// Brushes keep to what is selected, polygons or vertices, before the session or in it; what is
/// selected of another mesh is nothing to them.
TEST_F(NodeTest, ASelectionKeepsTheBrushesIn) {
    MakeNode(kHead);
    Stroke stroke = SomeStrokes()[0];
    stroke.radius = 100;
    Must("createNode transform -name other; polyCube -n cube");
    const std::vector<float> before = Output();
    const auto moved = [&](const std::string& first, const std::string& then) {
        Run("select " + first);
        Do(0);
        Run("select " + then);
        Sculpt(stroke);
        Do(1);
        const std::vector<float> now = Output();
        std::set<int> vertices;
        for (size_t i = 0; i < now.size(); ++i)
            if (now[i] != before[i]) vertices.insert(static_cast<int>(i) / 3);
        Do(245);
        Do(116);
        EXPECT_EQ(Output(), before);
        return vertices;
    };
    const auto all = moved("-cl", "-cl");
    EXPECT_GT(all.size(), before.size() / 6);
    EXPECT_EQ(moved("shown.vtx[1000:1100]", "-cl").size(), 101u) << "more than those move";
    EXPECT_EQ(moved("-cl", "shown.vtx[1000:1100]").size(), 101u);
    const auto inside = moved("-cl", "shown.f[500:900]");
    EXPECT_GT(inside.size(), 100u);
    EXPECT_LT(inside.size(), 500u);
    EXPECT_EQ(moved("cube.f[0]", "cube.vtx[0:3]"), all);
}

/// Paint goes out in a colour set of its own, on every level, over the colours that come in; the
/// commands do what they say to what brushes would paint on.
TEST_F(NodeTest, PaintGoesOutWithTheMesh) {
    MakeNode(kHead);
    Output();
    told.text.clear();
    const auto colors = [&] {
        const MObject mesh = Plug("k", "outputGeom").asMObject();
        const MFnMesh fn(mesh);
        MColorArray all;
        EXPECT_TRUE(fn.getVertexColors(all));
        EXPECT_EQ(all.length(), unsigned(fn.numVertices()));
        EXPECT_EQ(fn.currentColorSetName(), MString("Kelmo"));
        std::set<std::vector<float>> shown;
        for (unsigned v = 0; v < all.length(); ++v)
            shown.insert({all[v].r, all[v].g, all[v].b, all[v].a});
        return shown;
    };
    using Shown = std::set<std::vector<float>>;
    const auto sets = [&] { return MFnMesh(Plug("k", "outputGeom").asMObject()).numColorSets(); };
    const std::vector<float> before = Output();
    Must(
        "setAttr k.affectGeometry 0; setAttr k.affectVertColor 1;"
        "setAttr k.vertexPaintColor 1 0.5 0.25; setAttr k.vertColorStrength[8] 10");
    EXPECT_EQ(sets(), 0) << "nothing is painted yet";
    Do(108);
    EXPECT_EQ(colors(), (Shown{{1, 0.5f, 0.25f, 1}}));
    EXPECT_EQ(Output(), before);
    Do(107);
    EXPECT_EQ(colors(), (Shown{{0, 0.5f, 0.75f, 1}}));
    Do(106);
    EXPECT_EQ(sets(), 0);
    Do(97);
    Do(0);
    Sculpt(SomeStrokes()[0]);
    Do(1);
    for (const int level : {0, 1}) {
        Must("setAttr k.numRenderSubdivLvls " + std::to_string(level));
        const Shown shown = colors();
        EXPECT_TRUE(shown.contains({0.75f, 0.65f, 0.64f, 1})) << "what was not painted";
        EXPECT_GT(shown.size(), 20u);
        EXPECT_GT(shown.rbegin()->front(), 0.999f) << "what was painted wholly";
    }
    // A stencil is no colour, and becomes one.
    Must("setAttr k.affectVertColor 0; setAttr k.affectStencil 1; setAttr k.useStencil 0");
    Do(106);
    Do(110);
    EXPECT_EQ(colors(), (Shown{{0.75f, 0.65f, 0.64f, 1}}));
    Do(108);
    Do(107);
    Do(110);
    const float s = 1 - (1 + 0.5f + 0.25f) / 3;
    for (const auto& c : colors()) EXPECT_NEAR(c[0], 0.75f * (1 - s) + s, 1e-6);
    Do(0);
    Sculpt(SomeStrokes()[1]);
    EXPECT_EQ(Run("getAttr k.useStencil"), "1") << "what is painted protects";
    EXPECT_EQ(told.text.find("Error"), told.text.npos) << told.text;
}

/// Colours of the mesh that comes in show where nothing is painted, also when they change.
TEST_F(NodeTest, PaintLiesOverTheColoursThatComeIn) {
    MakeNode(kHead);
    const MObject mesh = host.scene.Find("k") ? Plug("k", "inputGeom").source().node() : MObject();
    MFnMesh source(mesh);
    const auto first = [&] {
        MColorArray all;
        MFnMesh(Plug("k", "outputGeom").asMObject()).getVertexColors(all);
        return all.length() > 0 ? all[0].g : -1;
    };
    Must("setAttr k.affectVertColor 1; setAttr k.vertexPaintColor 1 1 1");
    for (const float green : {0.25f, 0.5f}) {
        MColorArray colors(1);
        colors[0] = MColor(1, green, 0, 1);
        MIntArray vertex(1);
        ASSERT_TRUE(source.setVertexColors(colors, vertex));
        Do(108);
        EXPECT_EQ(first(), 1);
        Do(106);
        EXPECT_EQ(first(), green);
    }
}

TEST_F(NodeTest, TheFalloffCurveIsTheOneOfItsPoints) {
    const std::vector<Stroke> strokes{SomeStrokes()[1]};
    MakeNode(kHead);
    Do(0);
    Sculpt(strokes[0]);
    Do(6);
    const auto point = [&](int index, float position, float value) {
        const std::string plug = "setAttr k.falloff[" + std::to_string(index) + "].falloff_";
        Must(plug + "Position " + std::to_string(position) + ";" + plug + "FloatValue " +
             std::to_string(value));
    };
    // In the order of their places, whatever their numbers.
    point(4, 0.25f, 1);
    point(1, 0.75f, 0.125f);
    point(2, 0, 0.5f);
    point(7, 1, 0);
    Sculpt(strokes[0]);
    Do(1);
    const std::vector<float> sculpted = Output();
    const std::vector<float> wanted =
        Replay(strokes, 0, {{0, 0.5f}, {0.25f, 1}, {0.75f, 0.125f}, {1, 0}});
    ASSERT_EQ(sculpted.size(), wanted.size());
    for (size_t i = 0; i < wanted.size(); ++i) ASSERT_NEAR(sculpted[i], wanted[i], 2e-5) << i;
    EXPECT_NE(wanted, Replay(strokes, 0));
}

TEST_F(NodeTest, StrokesByConnectionsGiveTheBitsOfAReplay) {
    for (const int levels : {0, 1}) {
        host.NewScene();
        MakeNode(kHead);
        const std::vector<float> before = Output();
        for (int i = 0; i < levels; ++i) Do(97);
        Do(0);
        const std::vector<Stroke> strokes = SomeStrokes();
        for (const Stroke& stroke : strokes) Sculpt(stroke);
        EXPECT_EQ(Output(), before) << "in a session the mesh stays as it came";
        Run("setAttr k.numRenderSubdivLvls " + std::to_string(levels));
        // The frames of the surface are between sessions, and give the bits back where it stayed.
        Do(1);
        const std::vector<float> sculpted = Output(), wanted = Replay(strokes, levels);
        ASSERT_EQ(sculpted.size(), wanted.size());
        for (size_t i = 0; i < wanted.size(); ++i) ASSERT_NEAR(sculpted[i], wanted[i], 2e-5) << i;
        EXPECT_NE(sculpted, before);
        // In a session the surface is that of the replay, bit for bit.
        Do(0);
        Do(4);
        const std::vector<float> shown = Points("kMeshShape", "outMesh");
        EXPECT_EQ(shown, wanted) << told.text;
    }
}

TEST_F(NodeTest, UndoTakesStrokesBackOneByOne) {
    MakeNode(kHead);
    Do(0);
    std::vector<std::vector<float>> states;
    const auto look = [&] {
        Do(4);
        states.push_back(Points("kMeshShape", "outMesh"));
        Run("delete kMesh");
    };
    look();
    for (const Stroke& stroke : SomeStrokes()) {
        Sculpt(stroke);
        look();
    }
    for (size_t left = states.size() - 1; left-- > 0;) {
        Do(6);
        Do(4);
        EXPECT_EQ(Points("kMeshShape", "outMesh"), states[left]) << left;
        Run("delete kMesh");
    }
}

TEST_F(NodeTest, AStrokeBuildsNoMesh) {
    MakeNode(kHead);
    Output();
    Do(0);
    Sculpt(SomeStrokes()[0]);
    EXPECT_EQ(Plug("k", "outputGeom").asMObject(), Plug(source, "outMesh").asMObject());
}

TEST_F(NodeTest, AScrambledSettingReachesNoIndex) {
    MakeNode(kHead);
    Do(97);
    std::mt19937 random(3);
    const MFnDependencyNode node(MObject(host.scene.Find("k")));
    const auto scramble = [&](unsigned i) {
        MPlug plug(MObject(host.scene.Find("k")), node.attribute(i));
        const std::string name = plug.partialName().asChar();
        if (plug.isArray() || plug.isCompound() || name == "ex" || name == "ex0" || name == "cm")
            return;
        const double values[] = {-1, -2147483647, 2147483647, 20, 1e30, -1e30, 0, 3};
        plug.setValue(values[random() % std::size(values)]);
    };
    for (int round = 0; round < 4; ++round) {
        for (unsigned i = 0; i < node.attributeCount(); ++i)
            if (random() % 2) scramble(i);
        // No rounds of a thousand smoothings, which only take long.
        Run("setAttr k.objSmIt 1; setAttr k.brushSmoothIterations 1;"
            "setAttr k.sculptSmoothIterations 1; setAttr k.sculptSharpenIterations 1");
        for (int number = 0; number < 260; ++number) {
            if (number == 31 || number == 32 || number == 97 || number == 125) continue;
            Run("setAttr k.param0 " + std::to_string(static_cast<int>(random() % 7) - 2));
            Do(number);
            if (number % 40 == 0 && !testing::Test::HasFailure()) {
                Do(0);
                Sculpt({static_cast<int>(random() % 20), {0, 0, 5}, {{0.5f, 0, 5}, {1, 0, 5}}, 2});
            }
        }
        Output();
    }
}

TEST_F(NodeTest, RefusesAnotherTopologyAndOddMeshes) {
    MakeNode(kHead);
    Output();
    Run("polyCube -name box; connectAttr -force boxShape.outMesh k.inputGeom");
    Output();
    EXPECT_TRUE(told.Has("KelmoNode2: the can not update input - topo changed or no geometry."))
        << told.text;
    const std::pair<const char*, const char*> odd[] = {
        {"empty", "v 0 0 0\n"},
        {"shells", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 5 0 0\nv 6 0 0\nv 5 1 0\nf 1 2 3\nf 4 5 6\n"},
        {"fin", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nf 1 2 3\nf 1 2 4\nf 1 2 5\n"}};
    for (const auto& [name, text] : odd) {
        host.NewScene();
        const std::string path = folder / (std::string(name) + ".obj");
        std::ofstream(path) << text;
        MakeNode(path);
        Do(97);
        Do(0);
        Sculpt({8, {0, 0, 0}, {{0.1f, 0, 0}, {0.2f, 0, 0}}, 1});
        Do(1);
        for (const float f : Output()) EXPECT_TRUE(std::isfinite(f)) << name;
    }
}

}  // namespace
}  // namespace kelmo
