#include "core/sculpt/StrokeRecorder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokePlayer.h"
#include "tests/Paths.h"
#include "tests/core/sculpt/Strokes.h"
#include "tests/shapes/Models.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

/// A journal in a file of its own, which goes with it.
class Recording {
  public:
    Recording() {
        std::string error;
        EXPECT_TRUE(journal.Open(path_, StrokeLogHeader, error)) << error;
    }
    ~Recording() { std::filesystem::remove(path_); }
    std::string Close() {
        std::string error;
        EXPECT_TRUE(journal.Close(error)) << error;
        return Text();
    }
    std::string Text() const { return shapes::TextOf(path_); }

    StrokeJournal journal;

  private:
    std::string path_ =
        std::filesystem::temp_directory_path() / ("kelmo-journal-" + std::to_string(getpid()));
};

/// A node that plays logs.
struct Played {
    explicit Played(const PolyMesh& mesh) : target(node, mesh) {
        std::string error;
        EXPECT_TRUE(node.Load(mesh, error)) << error;
    }
    /// Empty, or what stopped it. Operations that can't be done here are left out when `tolerant`.
    std::string Play(const std::vector<StrokeOp>& ops, bool tolerant) {
        std::string error;
        for (const StrokeOp& op : ops)
            if (!player.Play(op, error) && !tolerant) return WriteOp(op) + ": " + error;
        return {};
    }
    std::string Play(const std::string& log) {
        StrokeLogReader reader(log);
        StrokeOp op;
        FileError error;
        StrokeLogReader::Result read;
        while ((read = reader.Next(op, error)) == StrokeLogReader::Result::Operation)
            if (!player.Play(op, error.message)) return WriteOp(op) + ": " + error.message;
        return read == StrokeLogReader::Result::End ? "" : error.Text();
    }

    LHeadlessNode node{1};
    HeadlessTarget target;
    StrokePlayer player{target};
};

/// Empty when both have the same surface, colours and stencils on all levels, and are as far.
std::string Difference(LHeadlessNode& a, LHeadlessNode& b) {
    const LSubdivMesh &geom = *a.lobject()->GetOrigGeom(), &other = *b.lobject()->GetOrigGeom();
    if (geom.GetNumSubivLevels() != other.GetNumSubivLevels()) return "levels";
    if (geom.GetActiveLevel() != other.GetActiveLevel()) return "active level";
    a.FinishSculpt(true);
    b.FinishSculpt(true);
    a.UpdateSubdivLevels();
    b.UpdateSubdivLevels();
    if (!SameBits(AllVerts(geom), AllVerts(other))) return "geometry";
    if (!SameBits(AllVerts(*a.GetObjectDelta()), AllVerts(*b.GetObjectDelta()))) return "delta";
    for (int v = 0; v < geom.GetNumVerts(); ++v) {
        const LColor c = a.lcolorDelta()->ResAt(v), d = b.lcolorDelta()->ResAt(v);
        if (c.r != d.r || c.g != d.g || c.b != d.b) return "colours";
        if (a.lcolorDelta()->Stencils()[v] != b.lcolorDelta()->Stencils()[v]) return "stencils";
    }
    return {};
}

std::vector<StrokeOp> AnyStroke() {
    const auto unit = [] { return *rc::gen::inRange(-100, 101) / 100.0f; };
    const LPoint3 from = Normalized(LPoint3(unit(), unit(), unit() + 1.5f));
    std::vector<StrokeOp> ops{PressOp{*rc::gen::inRange(0, 20),
                                      from,
                                      -from,
                                      {1, 0, 0},
                                      from,
                                      {unit(), unit()},
                                      0.2f + 0.2f * std::abs(unit()),
                                      1}};
    const LPoint3 step(0.1f * unit(), 0.1f * unit(), 0.02f * unit());
    for (int i = *rc::gen::inRange(0, 4); i > 0; --i) {
        if (*rc::gen::inRange(0, 6) == 0)
            ops.push_back(ModifiersOp{*rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>()});
        ops.push_back(MoveOp{
            from + step * static_cast<float>(4 - i), {unit(), unit()}, from, std::abs(unit())});
    }
    ops.push_back(ReleaseOp{});
    return ops;
}

StrokeOp AnySetting() {
    const auto flag = [](const char* name) { return SetOp{name, *rc::gen::arbitrary<bool>(), {}}; };
    switch (*rc::gen::inRange(0, 10)) {
        case 0:
            return flag("accumulate");
        case 1:
            return flag("affectGeometry");
        case 2:
            return flag("affectVertColor");
        case 3:
            return flag("affectStencil");
        case 4:
            return flag("useStencil");
        case 5:
            return flag("useSelected");
        case 6:
            return SetOp{"symmetry", 1.0 * *rc::gen::inRange(1, 5), {}};
        case 7:
            return SetOp{"paintPressMult", *rc::gen::inRange(1, 9) * 0.5, *rc::gen::inRange(0, 20)};
        case 8:
            return SetOp{"vertexPaintColor", std::vector<double>{1, 0.5, 0.25}, {}};
        default:
            return FalloffOp{*rc::gen::inRange(1, 3), {{0, 1}, {0.4f, 0.3f}, {1, 0}}};
    }
}

std::vector<int> SomeFaces() {
    return *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 80));
}

/// Sees the mesh along z, in stripes.
MaskOp AnyMask() {
    MaskOp op{{*rc::gen::inRange(2, 40), *rc::gen::inRange(2, 40), {}, {}}};
    for (size_t i = 0; i < 4; ++i) op.mask.toClip[i * 5] = i < 2 ? 0.7 : 1;
    for (auto left = static_cast<int>(op.mask.NumPixels()); left > 0;) {
        op.mask.runs.push_back(std::min(left, *rc::gen::inRange(0, 60)));
        left -= op.mask.runs.back();
    }
    return op;
}

std::vector<StrokeOp> AnyEdit() {
    switch (*rc::gen::inRange(0, 14)) {
        case 0:
            return {UndoOp{}};
        case 1:
            return {SubdivideOp{*rc::gen::element(SubdivideKind::Quad, SubdivideKind::Loop)}};
        case 2:
            return {DeleteLevelOp{}};
        case 3:
            return {LevelOp{*rc::gen::inRange(0, 3)}};
        case 4:
            return {SelectOp{SomeFaces()}};
        case 5:
            return {HideOp{SomeFaces()}};
        case 6:
            return {ShowOp{}};
        case 7:
            return {PaintOp{static_cast<PaintEdit>(*rc::gen::inRange(0, 5))}};
        case 8:
            return {FinishOp{}};
        case 9:
            return {NeutralOp{}};
        case 10:
            return {AnySetting(), AnySetting()};
        case 11:
            return {AnyMask()};
        case 12:
            return {UnmaskOp{}};
        default:
            return AnyStroke();
    }
}

}  // namespace

// Whatever was done, the journal gives it again; and so it does when it is cut anywhere, up to the
// strokes that are whole.
RC_GTEST_PROP(StrokeRecorder, WhatWasRecordedGivesTheSameBits, ()) {
    const PolyMesh mesh = Boulder(1);
    Played original(mesh);
    Recording recording;
    {
        StrokeRecorder recorder(original.target, recording.journal);
        for (int i = *rc::gen::inRange(1, 10); i > 0; --i) {
            const int levels = original.node.lobject()->GetOrigGeom()->GetNumSubivLevels();
            std::vector<StrokeOp> ops = *rc::gen::arbitrary<bool>() ? AnyStroke() : AnyEdit();
            if (std::holds_alternative<SubdivideOp>(ops[0]) && levels > 2) continue;
            original.Play(ops, true);
        }
        RC_ASSERT(!recorder.IsBroken());
    }
    const std::string log = recording.Close();
    Played again(mesh);
    RC_ASSERT(again.Play(log) == "");
    RC_ASSERT(Difference(original.node, again.node) == "");

    const std::string_view cut =
        WholeStrokes(std::string_view(log).substr(0, *rc::gen::inRange<size_t>(0, log.size() + 1)));
    if (cut.empty()) return;
    Played part(mesh);
    RC_ASSERT(part.Play(std::string(cut)) == "");
    RC_ASSERT(!part.node.IsStroking());
}

TEST(StrokeRecorder, AStrokeIsOnDiskBeforeTheNextBeginsAndNotBeforeItEnds) {
    const PolyMesh mesh = Boulder(2);
    Played played(mesh);
    Recording recording;
    StrokeRecorder recorder(played.target, recording.journal);
    const auto strokes = [&] {
        const std::string text = recording.Text();
        size_t count = 0, at = 0;
        while ((at = text.find("\"release\"", at)) != text.npos) ++at, ++count;
        EXPECT_EQ(WholeStrokes(text).size(), text.size());
        return count;
    };
    std::string error;
    for (size_t i = 0; i < 5; ++i) {
        const float x = 0.1f * static_cast<float>(i);
        ASSERT_TRUE(played.player.Play(
            PressOp{8, {x, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {}, 0.3f, 1}, error));
        EXPECT_EQ(strokes(), i);
        ASSERT_TRUE(played.player.Play(MoveOp{{x, 0.1f, 1}, {}, {0, 0, 1}, 1}, error));
        ASSERT_TRUE(played.player.Play(ReleaseOp{}, error));
    }
    recording.journal.Join();
    EXPECT_EQ(strokes(), 5u);
    EXPECT_EQ(recorder.NumStrokes(), 5);
}

// A limit on the size of files stands for the full disk.
TEST(StrokeJournal, AFullDiskIsToldAndLosesNothingOnceThereIsRoom) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    Recording recording;
    const std::string line(1000, 'x');
    rlimit small = before;
    small.rlim_cur = 2500;
    setrlimit(RLIMIT_FSIZE, &small);
    std::string expected = std::string(StrokeLogHeader) + "\n";
    for (int i = 0; i < 5; ++i) {
        recording.journal.chunk() += line + "\n";
        expected += line + "\n";
        recording.journal.Commit();
        recording.journal.Join();
        EXPECT_EQ(recording.journal.Problem().empty(), i < 2) << i;
    }
    EXPECT_NE(recording.journal.Problem().find("File too large"), std::string::npos)
        << recording.journal.Problem();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    recording.journal.chunk() += "end\n";
    recording.journal.Commit();
    recording.journal.Join();
    EXPECT_EQ(recording.journal.Problem(), "");
    EXPECT_EQ(recording.Close(), expected + "end\n");
}

TEST(StrokeJournal, CantBeOpenedWhereNothingCanBeWritten) {
    StrokeJournal journal;
    std::string error;
    EXPECT_FALSE(journal.Open("/nowhere/journal", StrokeLogHeader, error));
    EXPECT_EQ(error, "/nowhere/journal: cannot write: No such file or directory");
    EXPECT_FALSE(journal.Open("/dev/full", StrokeLogHeader, error));
    EXPECT_NE(error.find("No space left on device"), std::string::npos) << error;
    EXPECT_FALSE(journal.IsOpen());
}
