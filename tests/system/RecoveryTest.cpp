#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "app/session/SessionFolder.h"
#include "tests/system/WindowFixture.h"

// What is left when the program is killed, and what it makes of that when it starts again.

namespace {

using namespace kelmo_tests;
using testing::HasSubstr;
using VantrelSDK::PolyMesh;

double Distance(const PolyMesh& a, const PolyMesh& b) {
    if (a.positions.size() != b.positions.size()) return 1e9;
    double most = 0;
    for (size_t i = 0; i < a.positions.size(); ++i)
        most = std::max(most, double{(a.positions[i] - b.positions[i]).Len()});
    return most;
}

class Recovery : public WindowFixture {
  protected:
    void SetUp() override {
        WindowFixture::SetUp();
        setenv("XDG_STATE_HOME", (folder_ / "state").c_str(), 1);
    }
    void TearDown() override {
        WindowFixture::TearDown();
        unsetenv("XDG_STATE_HOME");
    }

    void Kill() {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }
    /// The stroke of a number: each is elsewhere.
    void StrokeOf(int number) {
        const int x = 390 + 17 * (number % 5), y = 270 + 13 * (number % 7);
        Drag(x, y, x + 30, y + 20, 1, 8);
    }
    /// What kelmo recover makes of the only session that was left.
    PolyMesh Recovered() {
        const std::string out = folder_ / "recovered.obj";
        const Outcome outcome =
            Shell(std::string(paths::kProgram) + " recover --forget --out " + out);
        EXPECT_EQ(outcome.code, 0) << outcome.text;
        PolyMesh mesh;
        VantrelSDK::FileError error;
        EXPECT_TRUE(VantrelSDK::ReadMesh(out, mesh, error)) << error.Text();
        return mesh;
    }
};

TEST_F(Recovery, FiftyKillsAtAnyMomentLoseNoStrokeThatWasFinished) {
    constexpr int kMost = 3;
    Start({head_});
    std::vector<PolyMesh> after{Export()};
    for (int i = 0; i <= kMost; ++i) {
        StrokeOf(i);
        after.push_back(Export());
        ASSERT_GT(Distance(after.back(), after[after.size() - 2]), 1e-3);
    }
    Kill();
    for (const auto& left : kelmo::FindLeftSessions()) kelmo::ForgetSession(left);
    std::mt19937 random(20261123);
    int partial = 0;
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        Start({head_});
        const int finished = static_cast<int>(random() % kMost);
        for (int i = 0; i < finished; ++i) StrokeOf(i);
        // In the midst of the next, or of what follows it.
        const int x = 390 + 17 * (finished % 5), y = 270 + 13 * (finished % 7);
        To(x, y);
        Button(1, true);
        const bool ends = random() % 2;
        for (int i = 1; i <= 8; ++i) To(x + 30 * i / 8, y + 20 * i / 8);
        if (ends) Button(1, false);
        XSync(x_, False);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60000));
        Kill();
        Button(1, false);
        XSync(x_, False);
        const auto left = kelmo::FindLeftSessions();
        if (left.empty()) {
            EXPECT_EQ(finished, 0);
            continue;
        }
        ASSERT_EQ(left.size(), 1u);
        const int strokes = left[0].strokes;
        EXPECT_GE(strokes, finished);
        EXPECT_LE(strokes, finished + ends);
        partial += strokes > finished;
        EXPECT_LT(Distance(Recovered(), after[static_cast<size_t>(strokes)]), 1e-5);
    }
    EXPECT_TRUE(kelmo::FindLeftSessions().empty());
    printf("of the strokes in progress %d were kept\n", partial);
}

TEST_F(Recovery, StrokesWithAPatternAreKeptToo) {
    Start({head_});
    StrokeOf(0);
    ClickPattern();
    for (int i = 1; i < 3; ++i) StrokeOf(i);
    const PolyMesh stamped = Export();
    ClickPattern();
    StrokeOf(3);
    const PolyMesh sculpted = Export();
    ASSERT_GT(Distance(stamped, sculpted), 1e-3);
    Kill();
    EXPECT_LT(Distance(Recovered(), sculpted), 1e-5);
}

TEST_F(Recovery, TheNextStartOffersItBack) {
    Start({head_});
    for (int i = 0; i < 3; ++i) StrokeOf(i);
    PressWith({XK_Control_L}, XK_z);
    const PolyMesh sculpted = Export();
    Kill();
    const Outcome wrong = Shell(std::string(paths::kProgram) + " recover --out x.ply");
    EXPECT_EQ(wrong.code, 1);
    EXPECT_THAT(wrong.text, HasSubstr("x.ply: give it the ending of a scene"));
    Start({});
    Press(XK_Return);
    Rest();
    EXPECT_EQ(Distance(Export(), sculpted), 0) << Told();
    // It is unsaved work of the new session: a second crash loses nothing either.
    StrokeOf(4);
    const PolyMesh more = Export();
    Kill();
    EXPECT_LT(Distance(Recovered(), more), 1e-5);
}

TEST_F(Recovery, ClosingLeavesNothing) {
    Start({head_});
    StrokeOf(0);
    PressWith({XK_Control_L, XK_Shift_L}, XK_s);
    Type("work.mhb");
    Press(XK_Return);
    Rest();
    PressWith({XK_Control_L}, XK_q);
    EXPECT_EQ(Ended(), 0) << Told();
    EXPECT_TRUE(kelmo::FindLeftSessions().empty());
    EXPECT_THAT(Shell(std::string(paths::kProgram) + " recover").text,
                HasSubstr("Nothing was left by a crash."));
}

TEST_F(Recovery, ARecordingPlaysBackToTheSameBits) {
    const std::string log = folder_ / "session.jsonl";
    Start({"record", head_, "--log", log});
    StrokeOf(0);
    PressWith({XK_Control_L}, XK_l);
    Hold(XK_Shift_L);
    StrokeOf(1);
    LetGo(XK_Shift_L);
    for (const KeySym brush : {XK_2, XK_5, XK_m}) {
        Press(brush);
        Rest();
        StrokeOf(2);
    }
    PressWith({XK_Control_L}, XK_z);
    StrokeOf(3);
    const PolyMesh sculpted = Export();
    PressWith({XK_Control_L, XK_Shift_L}, XK_s);
    Type("work.mhb");
    Press(XK_Return);
    Rest();
    PressWith({XK_Control_L}, XK_q);
    ASSERT_EQ(Ended(), 0) << Told();
    const std::string out = folder_ / "again.obj";
    const Outcome outcome = Shell(std::string(paths::kProgram) + " replay " + log + " --mesh " +
                                  head_ + " --out " + out);
    ASSERT_EQ(outcome.code, 0) << outcome.text;
    PolyMesh again;
    VantrelSDK::FileError error;
    ASSERT_TRUE(VantrelSDK::ReadMesh(out, again, error)) << error.Text();
    ASSERT_EQ(again.positions.size(), sculpted.positions.size()) << Read(log);
    EXPECT_EQ(Distance(again, sculpted), 0);
}

// A limit on the size of files stands for the full disk: the scene fits, its strokes do not.
TEST_F(Recovery, AFullDiskIsToldAndSculptingGoesOn) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 8000;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    Start({head_});
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(Told(), HasSubstr("File too large; sculpting goes on"));
    const std::string shown = Picture();
    StrokeOf(0);
    EXPECT_NE(Picture(), shown);
    EXPECT_TRUE(IsRunning());
}

}  // namespace
