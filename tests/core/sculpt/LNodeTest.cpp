#include "core/sculpt/LNode.h"

#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

/// A progress display that a test watches and stops.
struct Watch : LProgressCallback {
    Watch(std::vector<float>& seen, float stopAt) : seen_(seen), stopAt_(stopAt) {}
    void Show() override {}
    void SetProgress(float done) override { seen_.push_back(done); }
    float GetProgress() override { return seen_.empty() ? 0 : seen_.back(); }
    void Hide() override {}
    bool IsCancelled() const override { return !seen_.empty() && seen_.back() >= stopAt_; }

    std::vector<float>& seen_;
    float stopAt_;
};

}  // namespace

TEST(Node, OpeningASessionShowsProgressStopsAndChangesNoSurface) {
    std::vector<float> seen;
    float stopAt = 2;
    LHeadlessNode node(1, [&] { return std::make_unique<Watch>(seen, stopAt); });
    std::string error;
    EXPECT_FALSE(node.InitSculpt()) << "there is nothing to sculpt";
    EXPECT_FALSE(node.InitTransform({}, {}, {}, {}, {}, 1, 8, false));
    EXPECT_FALSE(node.Transform({1, 0, 0}, {}, {}));
    ASSERT_TRUE(node.Load(Boulder(3), error));
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(node.SubdivideAll_Loop());
    node.SetActiveSubdivLevel(2);
    const std::vector<LPoint3> before = Surface(node);
    seen.clear();
    ASSERT_TRUE(node.InitSculpt());
    EXPECT_TRUE(SameBits(Surface(node), before));
    EXPECT_EQ(node.lobject()->GetOrigGeom()->GetActiveLevel(), 2);
    EXPECT_GT(seen.size(), 3u);
    EXPECT_EQ(seen.back(), 1);
    node.FinishSculpt(false);
    stopAt = 0.3f;
    seen.clear();
    EXPECT_FALSE(node.InitSculpt());
    EXPECT_FALSE(node.IsSculpting());
    EXPECT_EQ(node.Init(nullptr), 1);
    EXPECT_FALSE(node.Load(PolyMesh(), error));
    EXPECT_EQ(error, "the mesh is empty");
}

TEST(Node, AMoveKeepsTheHistoryOfTheStroke) {
    const auto node = OpenNode(Boulder(3));
    Stroke(*node, {.mode = 8, .pos = {1, 0, 0}}, {}, false);
    ASSERT_TRUE(node->Transform({1, 0.1f, 0}, {0.1f, 0}, {0, 0, 1}));
    EXPECT_EQ(node->lnormal(), LPoint3(0, 0, 1));
    EXPECT_FALSE(node->Transform({1, 0.1f, 0}, {0.2f, 0}, {0, 1, 0})) << "the same place";
    EXPECT_EQ(node->lnormal(), LPoint3(0, 0, 1));
    ASSERT_TRUE(node->Transform({1, 0.2f, 0}, {0.2f, 0}, {0, 1, 0}));
    // The new normal counts twice, the one before twice.
    EXPECT_LT((node->lnormal() - Normalized(LPoint3(0, 2, 2))).Len(), 1e-6f);
    EXPECT_EQ(node->ltrans(0), LPoint3(1, 0, 0));
    EXPECT_EQ(node->ltrans(1), LPoint3(1, 0.1f, 0));
    EXPECT_EQ(node->ltrans(2), LPoint3(1, 0.2f, 0));
    EXPECT_EQ(node->ltrans(3), LPoint3(1, 0, 0));
    EXPECT_EQ(node->lmode(), 8);
}

TEST(Node, ModifierKeysTurnOneModeIntoAnother) {
    for (int mode = -1; mode <= 20; ++mode) {
        EXPECT_EQ(GetShiftMode(mode), mode < 0 || mode > 19 ? mode : mode < 8 ? 6 : 12);
        // Ctrl swaps pairs, but for Move, which becomes Pull.
        if (mode != 0 && mode != 2 && mode != 3) {
            EXPECT_EQ(GetCtrlMode(GetCtrlMode(mode)), mode);
        }
    }
    EXPECT_EQ(GetCtrlMode(0), 2);
    EXPECT_EQ(GetCtrlMode(2), 3);
    EXPECT_EQ(GetCtrlMode(3), 2);
    const auto sculpt = [](bool shift, bool ctrl, int mode) {
        const auto node = OpenNode(Boulder(4));
        const LPoint3 pos = Surface(*node)[9];
        SetShiftPressed(shift);
        SetCtrlPressed(ctrl);
        Stroke(*node, {.mode = mode, .pos = pos}, Path(pos, {0.02f, 0, 0}, 3));
        SetShiftPressed(false);
        SetCtrlPressed(false);
        return Deltas(*node);
    };
    EXPECT_TRUE(SameBits(sculpt(true, false, 8), sculpt(false, false, 12)));
    EXPECT_TRUE(SameBits(sculpt(true, true, 8), sculpt(false, false, 12)));
    EXPECT_TRUE(SameBits(sculpt(false, true, 8), sculpt(false, false, 9)));
    EXPECT_TRUE(SameBits(sculpt(true, false, 2), sculpt(false, false, 6)));
}

TEST(Node, AKeyPressedInAStrokeCountsFromTheNextStepOn) {
    for (const int mode : {0, 2, 4, 7, 8, 10, 12, 16}) {
        const auto node = OpenNode(Boulder(4));
        const LPoint3 pos = Surface(*node)[9];
        Stroke(*node, {.mode = mode, .pos = pos}, {}, false);
        node->Transform(pos + LPoint3(0.02f, 0, 0), {0.1f, 0}, {0, 0, 1});
        const std::vector<LPoint3> before = Deltas(*node);
        SetShiftPressed(true);
        node->Transform(pos + LPoint3(0.06f, 0, 0), {0.3f, 0}, {0, 0, 1});
        SetShiftPressed(false);
        EXPECT_FALSE(SameBits(Deltas(*node), before)) << "mode " << mode;
        node->FinishTransform(true);
        EXPECT_EQ(CheckCaches(*node), "");
        EXPECT_TRUE(node->UndoStroke());
        for (const LPoint3& d : Deltas(*node)) ASSERT_EQ(d, LPoint3::Zero);
    }
}

TEST(Node, LevelsInASession) {
    const auto node = OpenNode(Boulder(3), 2);
    const LPoint3 pos = Surface(*node)[9];
    Stroke(*node, {.mode = 8, .pos = pos}, Path(pos, {0.02f, 0, 0}, 3));
    ASSERT_TRUE(node->SubdivideAll_Loop());
    ASSERT_TRUE(node->SubdivideAll_Loop());
    EXPECT_EQ(CheckCaches(*node), "");
    EXPECT_FALSE(node->UndoStroke());
    // Fine at the top, then coarse at level 1: the top follows when the level changes.
    Stroke(*node, {.mode = 9, .pos = pos, .radius = 0.1f}, Path(pos, {0.01f, 0, 0}, 3));
    const std::vector<LPoint3> fine = Deltas(*node);
    ASSERT_TRUE(node->SetActiveSubdivLevel(1));
    Stroke(*node, {.mode = 0, .pos = pos}, {pos + LPoint3(0.3f, 0, 0)});
    EXPECT_EQ(CheckCaches(*node), "");
    ASSERT_TRUE(node->SetActiveSubdivLevel(2));
    EXPECT_EQ(CheckCaches(*node), "");
    const std::vector<LPoint3> moved = Deltas(*node);
    int followed = 0;
    for (size_t v = node->lobject()->GetOrigGeom()->GetNumLevelVerts(1); v < moved.size(); ++v)
        followed += moved[v].x > fine[v].x + 0.01f;
    EXPECT_GT(followed, 20);
    EXPECT_FALSE(node->SetActiveSubdivLevel(3));
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    EXPECT_FALSE(node->DeleteTopLevelSudiv());
    EXPECT_EQ(CheckCaches(*node), "");
    EXPECT_TRUE(SameBits(Deltas(*node), {moved.begin(), moved.begin() + Deltas(*node).size()}));
    std::string error;
    EXPECT_TRUE(node->CanSubdivide(false, error));
}

TEST(Node, EraseGoesBackToTheSessionsBeginning) {
    // What was sculpted before the session is not the eraser's.
    const auto node = OpenNode(Boulder(3));
    const LPoint3 pos = Surface(*node)[9];
    Stroke(*node, {.mode = 8, .pos = pos}, Path(pos, {0.02f, 0, 0}, 3));
    node->FinishSculpt(false);
    ASSERT_TRUE(node->InitSculpt());
    const std::vector<LPoint3> start = Deltas(*node);
    node->settings().paintPressMult.Set(19, 10);
    node->settings().useFalloff2 = false;
    Stroke(*node, {.mode = 19, .pos = pos, .radius = 1}, Path(pos, {0.02f, 0, 0}, 4));
    EXPECT_TRUE(SameBits(Deltas(*node), start)) << "untouched in this session";
    Stroke(*node, {.mode = 8, .pos = pos}, Path(pos, {0.02f, 0, 0}, 3));
    for (int i = 0; i < 20; ++i)
        Stroke(*node, {.mode = 19, .pos = pos, .radius = 1}, Path(pos, {0.02f, 0, 0}, 4));
    EXPECT_TRUE(SameBits(Deltas(*node), start));
}
