#include <fmt/format.h>

#include "core/io/ObjReader.h"
#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokePlayer.h"
#include "tests/host/ModuleFixture.h"
#include "tests/shapes/Models.h"

// What a node of the host writes down of what is done to it.

namespace kelmo {
namespace {

class JournalTest : public ModuleFixture {
  protected:
    JournalTest() {
        MakeNode(kHead);
        Must("createNode locator -name brush");
    }

    std::string Journal() const { return folder / "journal.jsonl"; }
    void Start() { Must("KelmoJournal -start \"" + Journal() + "\" k"); }

    void Stroke(int mode, const VantrelSDK::LPoint3& from) {
        std::string script = fmt::format(
            "setAttr k.sculptMode {0}; setAttr k.brushNorm 0 0 1; setAttr k.toolSize[{0}] 2;"
            "setAttr k.startX {1}; setAttr k.startY {2}; setAttr k.startZ {3};"
            "move {1} {2} {3} brush; connectAttr brush.matrix k.brush;",
            mode, from.x, from.y, from.z);
        for (int i = 1; i <= 3; ++i)
            script += fmt::format("move {} {} {} brush;", from.x + 0.2f * i, from.y + 0.1f * i * i,
                                  from.z);
        Must(script + "disconnectAttr brush.matrix k.brush");
    }
    /// Everything that a person does in an hour, in short.
    void Work() {
        const VantrelSDK::LPoint3 nose{0, 7, 8}, cheek{-3, 6, 6}, brow{2, 9, 7};
        Do(0);
        for (const int mode : {8, 0, 12, 16}) Stroke(mode, nose);
        Must("setAttr k.symmetry 1; setAttr k.paintPressMult[9] 2.5; setAttr k.accumulate 1");
        Stroke(9, cheek);
        Do(6);
        Stroke(8, cheek);
        Must("select shown.f[100:400]");
        Stroke(8, brow);
        Do(117);
        Stroke(13, brow);
        Do(116);
        Do(97);
        Stroke(8, brow);
        Must(
            "setAttr k.falloff[0].falloff_Position 0; setAttr k.falloff[0].falloff_FloatValue 1;"
            "setAttr k.falloff[1].falloff_Position 0.3; setAttr k.falloff[1].falloff_FloatValue "
            "0.2; setAttr k.falloff[1].falloff_Interp 2; setAttr k.falloff[0].falloff_Interp 2");
        Stroke(0, nose);
        Do(1);
        Must("setAttr k.param0 0");
        Do(92);
        Do(0);
        Must(
            "setAttr k.affectVertColor 1; setAttr k.affectGeometry 0;"
            "setAttr k.vertexPaintColor 1 0.5 0.25; setAttr k.vertColorStrength[8] 1.5");
        Stroke(8, cheek);
        Do(107);
        Do(109);
        Must("setAttr k.affectGeometry 1; setAttr k.useStencil 1");
        Stroke(8, nose);
        Must("setAttr k.param0 1");
        Do(92);
        Do(1);
        EXPECT_EQ(Run("KelmoJournal -q -broken k"), "0");
        EXPECT_EQ(Run("KelmoJournal -q -strokes k"), "12");
        EXPECT_EQ(Run("KelmoJournal -q -problem k"), "");
    }
    /// What was sculpted, of the top level: a mesh of its own in the scene.
    std::vector<float> Result(const std::string& node) {
        Do(4, node);
        const std::string made =
            Run("string $meshes[] = `ls -type mesh`; $meshes[size($meshes) - 1]");
        return Points(made, "outMesh");
    }
};

TEST_F(JournalTest, PlaysBackToTheSameBitsOnAnotherNodeAndWithoutAHost) {
    using namespace VantrelSDK;
    Start();
    Work();
    Must("KelmoJournal -stop k");
    const std::vector<float> made = Result("k");
    Must("select -clear; createNode KelmoND -name again; connectAttr " + source +
         ".outMesh again.inputGeom; setAttr again.forceRenderTopLevel 0");
    EXPECT_EQ(Run("KelmoJournal -play \"" + Journal() + "\" again"), "12") << told.text;
    Do(1, "again");
    EXPECT_TRUE(Result("again") == made);

    PolyMesh mesh, result;
    FileError problem;
    std::string error;
    ASSERT_TRUE(ReadObj(kHead, mesh, problem));
    LHeadlessNode node;
    ASSERT_TRUE(node.Load(mesh, error));
    HeadlessTarget target(node, mesh);
    StrokePlayer player(target);
    const std::string log = shapes::TextOf(Journal());
    StrokeLogReader reader(log);
    StrokeOp op;
    StrokeLogReader::Result read;
    while ((read = reader.Next(op, problem)) == StrokeLogReader::Result::Operation)
        ASSERT_TRUE(player.Play(op, error)) << reader.Line() << error;
    ASSERT_EQ(read, StrokeLogReader::Result::End) << problem.Text();
    ASSERT_TRUE(node.GetResult(mesh, 1, result, error));
    ASSERT_EQ(made.size(), 3 * result.positions.size());
    EXPECT_TRUE(std::equal(made.begin(), made.end(), &result.positions.data()->x));
}

TEST_F(JournalTest, TellsWhenItCantTell) {
    Start();
    Do(0);
    Stroke(8, {0, 7, 8});
    EXPECT_EQ(Run("KelmoJournal -q -broken k"), "0");
    Do(1);
    Do(245);
    EXPECT_EQ(Run("KelmoJournal -q -broken k"), "1") << "the work was zeroed";
    Start();
    EXPECT_EQ(Run("KelmoJournal -q -broken k"), "0");
    Must("setAttr " + source + ".pnts[3].pntx 0.1");
    Output();
    EXPECT_EQ(Run("KelmoJournal -q -broken k"), "1") << "another mesh comes in";
}

TEST_F(JournalTest, SaysWhatIsWrong) {
    EXPECT_EQ(Run("KelmoJournal -q -path k"), "");
    Run("KelmoJournal -start \"/nowhere/journal\" k");
    EXPECT_TRUE(told.Has("/nowhere/journal: cannot write: No such file or directory")) << told.text;
    Run("KelmoJournal -play \"/nowhere/journal\" k");
    EXPECT_TRUE(told.Has("/nowhere/journal: cannot open")) << told.text;
    Run("KelmoJournal -stop nobody");
    EXPECT_TRUE(told.Has("KelmoJournalCmd: can not find kelmo node.")) << told.text;
    std::ofstream(Journal())
        << "{\"kelmo\":\"strokes\",\"version\":1}\n{\"op\":\"level\",\"value\":7}\n";
    Run("KelmoJournal -play \"" + Journal() + "\" k");
    EXPECT_TRUE(told.Has(Journal() + ":2: level 7 does not exist")) << told.text;
}

}  // namespace
}  // namespace kelmo
