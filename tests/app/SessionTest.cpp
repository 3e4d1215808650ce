#include <fmt/format.h>
#include <gmock/gmock.h>

#include "app/session/SessionKeeper.h"
#include "tests/host/ModuleFixture.h"

// What a session keeps, and what the next program makes of it.

namespace kelmo {
namespace {

namespace fs = std::filesystem;

class SessionTest : public ModuleFixture {
  protected:
    SessionTest() {
        fs::remove_all(folder / "state");
        setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    }
    ~SessionTest() override { unsetenv("XDG_STATE_HOME"); }

    void Open() {
        Must("file -new");
        MakeNode(kHead);
        Must("createNode locator -name brush");
        Do(0);
    }
    void Stroke(int number) {
        const double x = 0.3 * number - 3;
        Must(fmt::format(
            "setAttr k.sculptMode 8; setAttr k.brushNorm 0 0 1; setAttr k.toolSize[8] 1.5;"
            "setAttr k.startX {0}; setAttr k.startY 7; setAttr k.startZ 7; move {0} 7 7 brush;"
            "connectAttr brush.matrix k.brush; move {0} 7.3 7 brush; move {0} 7.5 7.1 brush;"
            "disconnectAttr brush.matrix k.brush",
            x));
    }
    std::vector<float> Sculpted() {
        Do(4);
        const std::string made =
            Run("string $meshes[] = `ls -type mesh`; $meshes[size($meshes) - 1]");
        std::vector<float> points = Points(made, "outMesh");
        Must("string $above[] = `listRelatives -parent " + made + "`; delete $above[0]");
        return points;
    }
    size_t NumKept() {
        std::error_code none;
        size_t count = 0;
        for (const auto& entry : fs::directory_iterator(SessionsFolder(), none))
            count += entry.is_directory();
        return count;
    }

    std::string error;
};

TEST_F(SessionTest, WhatWasDoneComesBackAfterACrashBitForBit) {
    Open();
    std::vector<float> before;
    {
        SessionKeeper keeper(host);
        ASSERT_TRUE(keeper.Begin(error)) << error;
        ASSERT_TRUE(keeper.Checkpoint(kHead, false, error)) << error;
        EXPECT_TRUE(FindLeftSessions().empty()) << "it is running";
        EXPECT_FALSE(IsOpenElsewhere(kHead, keeper.folder()));
        EXPECT_TRUE(IsOpenElsewhere(fs::relative(kHead), {}));
        for (int i = 0; i < 4; ++i) Stroke(i);
        Do(6);
        EXPECT_EQ(keeper.NumStrokes(), 4);
        EXPECT_FALSE(keeper.IsDue());
        EXPECT_EQ(keeper.Problem(), "");
        before = Sculpted();
    }
    const auto left = FindLeftSessions();
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].strokes, 4);
    EXPECT_EQ(left[0].record.file, PlaceOf(kHead));
    Must("file -new");
    ASSERT_TRUE(RecoverSession(host, left[0], error)) << error;
    EXPECT_EQ(host.file.path, "") << "a mesh is no scene to be saved over";
    EXPECT_TRUE(Sculpted() == before);
    // And what was undone stays undone, the strokes can be taken back.
    Do(6);
    EXPECT_FALSE(Sculpted() == before);
    ForgetSession(left[0]);
    EXPECT_EQ(NumKept(), 0u);
}

TEST_F(SessionTest, ACheckpointTakesWhatNoJournalTells) {
    Open();
    std::vector<float> before;
    {
        SessionKeeper keeper(host);
        ASSERT_TRUE(keeper.Begin(error)) << error;
        ASSERT_TRUE(keeper.Checkpoint(folder / "work.mhb", false, error)) << error;
        Stroke(0);
        Do(1);
        Do(34);  // short offsets go
        EXPECT_TRUE(keeper.IsDue());
        ASSERT_TRUE(keeper.Checkpoint(folder / "work.mhb", true, error)) << error;
        EXPECT_FALSE(keeper.IsDue());
        EXPECT_EQ(keeper.NumStrokes(), 0);
        Do(0);
        Stroke(1);
        before = Sculpted();
        // A node that no journal has.
        Must("createNode KelmoND -name another");
        EXPECT_TRUE(keeper.IsDue());
        Must("delete another");
    }
    const auto left = FindLeftSessions();
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].strokes, 1);
    Must("file -new");
    ASSERT_TRUE(RecoverSession(host, left[0], error)) << error;
    EXPECT_EQ(host.file.path, folder / "work.mhb");
    const std::vector<float> after = Sculpted();
    ASSERT_EQ(after.size(), before.size());
    // The first stroke came back through the frames of the surface, as from any scene.
    for (size_t i = 0; i < after.size(); ++i) ASSERT_NEAR(after[i], before[i], 1e-5);
}

TEST_F(SessionTest, ASessionThatWasClosedOrDidNothingLeavesNothing) {
    Open();
    {
        SessionKeeper keeper(host);
        ASSERT_TRUE(keeper.Begin(error)) << error;
        ASSERT_TRUE(keeper.Checkpoint("", false, error)) << error;
        Stroke(0);
        keeper.End();
        EXPECT_EQ(NumKept(), 0u);
    }
    {
        SessionKeeper keeper(host);
        ASSERT_TRUE(keeper.Begin(error)) << error;
        ASSERT_TRUE(keeper.Checkpoint("", false, error)) << error;
    }
    EXPECT_TRUE(FindLeftSessions().empty());
    EXPECT_EQ(NumKept(), 0u);
}

TEST_F(SessionTest, BrokenFoldersAreNoSessions) {
    const fs::path at = SessionsFolder() / "20260101-000000-1";
    for (const char* record :
         {"", "{", "[]", "{\"kelmo\":\"session\"}", "{\"kelmo\":1}",
          "{\"kelmo\":\"session\",\"scene\":\"../../x.mhb\",\"unsaved\":true}"}) {
        fs::create_directories(at);
        std::ofstream(at / "session.json") << record;
        EXPECT_TRUE(FindLeftSessions().empty()) << record;
    }
    fs::create_directories(at);
    std::ofstream(at / "session.json")
        << R"({"kelmo":"session","scene":"none.mhb","unsaved":true,"journals":[{},3]})";
    const auto left = FindLeftSessions();
    ASSERT_EQ(left.size(), 1u);
    EXPECT_FALSE(RecoverSession(host, left[0], error));
    EXPECT_THAT(error, testing::HasSubstr("none.mhb"));
    EXPECT_TRUE(fs::exists(at)) << "what can't be recovered is not taken away";
}

TEST_F(SessionTest, SavesKeepOneBackup) {
    const std::string path = folder / "scene.mhs";
    const auto text = [](const std::string& file) {
        std::ifstream in(file);
        return std::string{std::istreambuf_iterator<char>(in), {}};
    };
    Must("createNode transform -name first; file -rename \"" + path + "\"; file -save");
    EXPECT_FALSE(fs::exists(path + "~"));
    const std::string first = text(path);
    Must("createNode transform -name second; file -save");
    EXPECT_EQ(text(path + "~"), first);
    const std::string second = text(path);
    Must("createNode transform -name third; file -save");
    EXPECT_EQ(text(path + "~"), second);
    EXPECT_THAT(text(path), testing::HasSubstr("third"));
}

}  // namespace
}  // namespace kelmo
