#include <unistd.h>

#include <cstdlib>

#include "tests/host/PictureFixture.h"

// The patterns of a node: their lists, the commands and flags that work on them, what they look
// like.

namespace kelmo {
namespace {

namespace fs = std::filesystem;
using minihost::Picture;

const std::string kPatterns = std::string(paths::kSource) + "/examples/patterns/";

class SearchPath {
  public:
    explicit SearchPath(const std::string& folder) {
        setenv("XBMLANGPATH", (folder + "%B").c_str(), 1);
    }
    ~SearchPath() { unsetenv("XBMLANGPATH"); }
};

class PatternsTest : public ModuleFixture {
  protected:
    void SetUp() override { MakeNode(kHead); }

    std::string Text(int number, int index) {
        Ask(number, index);
        return Plug("k", "param2").asString().asChar();
    }
    void List(const std::string& name, const std::string& text) {
        std::ofstream(folder / name) << text;
    }
    void Copy(const std::string& name) {
        fs::copy_file(kPatterns + name, folder / name, fs::copy_options::overwrite_existing);
    }
    /// How many patterns a node gets from a list.
    int CountOf(const std::string& list) {
        List("patterns.cfg", list);
        const SearchPath path(folder.string() + "/");
        host.NewScene();
        told.text.clear();
        MakeNode(kHead);
        return Ask(77);
    }
};

TEST_F(PatternsTest, TheOnesThatComeWithItAreSelectedAndLetGo) {
    const SearchPath path(kPatterns);
    EXPECT_EQ(Ask(83, 17), 17);
    EXPECT_TRUE(told.Has("KelmoNode: can not get selected pattern - null pattern collection\n"));
    EXPECT_EQ(Ask(77), 6);
    EXPECT_EQ(Text(84, 2), "Scales");
    EXPECT_EQ(Ask(83), -1);
    Ask(81, 2);
    EXPECT_EQ(Ask(83), 2);
    EXPECT_FALSE(told.Has("Click pattern again"));
    Ask(81, 2);
    EXPECT_TRUE(told.Has("Click pattern again to un select it.")) << told.text;
    EXPECT_EQ(Ask(83), 2);
    Ask(82, 2);
    EXPECT_EQ(Ask(83), -1);
    Ask(82, 4);
    EXPECT_EQ(Ask(83), 4);
    EXPECT_EQ(Text(87, 4), "lpattern_Grain.xpm");

    Ask(78);
    EXPECT_EQ(Ask(77), 7);
    EXPECT_EQ(Text(87, 6), "EMPTY.xpm");
    Ask(81, 6);
    EXPECT_TRUE(told.Has("KelmoNode: pattern is empty."));
    EXPECT_EQ(Ask(83), 4) << "another one stays";
    Must("setAttr k.param2 -type \"string\" \"" + kPatterns + "pores.png\"");
    Ask(80, 6);
    EXPECT_EQ(Text(84, 6), "pores");
    Must("setAttr k.param2 -type \"string\" \"mine\"");
    Ask(85, 6);
    EXPECT_EQ(Text(84, 6), "mine");
    Ask(79, 4);
    EXPECT_EQ(Ask(77), 6);
    EXPECT_EQ(Ask(83), -1) << "it was the active one";
    Ask(79, 40);
    EXPECT_TRUE(told.Has("there is no pattern with such index."));
    Must("setAttr k.param2 -type \"string\" \"/nowhere.png\"");
    Ask(80, 0);
    EXPECT_TRUE(told.Has("Kelmo: can read pattern (/nowhere.png)")) << told.text;
    EXPECT_TRUE(told.Has("MLPattern::Load can not load image file (/nowhere.png)\n"));
    Ask(82, 0);
    EXPECT_EQ(Ask(83), -1) << "its picture is gone";
}

TEST_F(PatternsTest, TheToolsFlagsAreTheCommands) {
    const SearchPath path(kPatterns);
    Must("select k");
    const std::string tool = "KelmoToolContext";
    Must("select shown; KelmoToolContext KelmoToolContext1");
    const auto query = [&](const std::string& flags) {
        return Run(tool + " -query " + flags + " KelmoToolContext1");
    };
    EXPECT_EQ(query("-numpatterns"), "6");
    EXPECT_EQ(query("-getpatternname 1"), "Cracks");
    Must(tool + " -edit -hitpattern 1 KelmoToolContext1");
    EXPECT_EQ(query("-selpattern"), "1");
    EXPECT_EQ(query("-patternswatchname 1"), "lpattern_Cracks.xpm");
    Must(tool + " -edit -hitpattern 1 KelmoToolContext1");
    EXPECT_EQ(query("-selpattern"), "-1");
    Must(tool + " -edit -addpattern KelmoToolContext1");
    EXPECT_EQ(query("-npt"), "7");
    Must(tool + " -edit -delpattern 6 KelmoToolContext1");
    EXPECT_EQ(query("-npt"), "6");
    const std::string report = Run("KelmoDiag -patterns");
    EXPECT_TRUE(report.starts_with("\nPattern diagnostics:\nDefault patterns:\n")) << report;
    EXPECT_NE(report.find("Scales  scales.png  OK\n"), report.npos);
    EXPECT_NE(report.find("\nUser patterns:\n  userpatterns.cfg is not there\n"), report.npos);
}

TEST_F(PatternsTest, ListsAreReadUpToWhereTheyBreak) {
    Copy("pores.png");
    const std::string one = "[pattern] a ### pores.png [/pattern]\n";
    EXPECT_EQ(CountOf("[num_patterns] 2 [/num_patterns] " + one + one), 2);
    EXPECT_EQ(CountOf("[num_patterns]\n1\n[/num_patterns]\n\n[pattern]\na\n###\npores.png x"), 1);
    EXPECT_FALSE(told.Has("none of 'patterns.cfg'"));
    EXPECT_EQ(CountOf("[num_patterns] 2000000000 [/num_patterns] " + one), 1) << "says too many";
    EXPECT_TRUE(
        told.Has("Kelmo: none of 'patterns.cfg' or 'userpatterns.cfg' is found in "
                 "expected location."));
    EXPECT_EQ(CountOf("[num_patterns] 3 [/num_patterns] " + one +
                      "[pattern] ### ### pores.png [/pattern] " + one),
              1);
    EXPECT_EQ(CountOf("[num_patterns] 3 [/num_patterns] " + one +
                      "[pattern] b ### ### [/pattern] " + one),
              1);
    EXPECT_EQ(CountOf("[num_patterns] 1 [/num_patterns] [pattern] a ### gone.png [/pattern]"), 1);
    EXPECT_TRUE(told.Has("Kelmo: can read pattern ("));
    const std::string lng(100000, 'x');
    for (const std::string& broken :
         {std::string(), std::string("[num_patterns] -5 [/num_patterns] " + one),
          std::string("[num_patterns] many [/num_patterns] " + one),
          std::string("[patterns] 1 [/patterns] " + one), std::string("[num_patterns] 1"),
          "[num_patterns] 1 [/num_patterns] [pattern] " + lng + " ### pores.png [/pattern]", lng,
          std::string("[num_patterns] 99999999999999999999 [/num_patterns] " + one),
          std::string("\0\xff\x80", 3), one})
        EXPECT_EQ(CountOf(broken), 0) << broken.substr(0, 60);
    // Every beginning of a good one.
    const std::string good = "[num_patterns] 2 [/num_patterns] " + one + one;
    for (size_t length = 0; length < good.size(); length += 7)
        EXPECT_LE(CountOf(good.substr(0, length)), 2);
    // A picture that is none.
    std::ofstream(folder / "pores.png") << "no picture";
    EXPECT_EQ(CountOf(good), 2);
    Ask(81, 0);
    EXPECT_EQ(Ask(83), -1);
}

TEST_F(PatternsTest, TheUsersListFollowsWhatIsSaved) {
    for (const char* name : {"pores.png", "cracks.png", "patterns.cfg"}) Copy(name);
    List("userpatterns.cfg", "as it was");
    const SearchPath path(folder.string() + "/");
    const std::string scene = (folder / "scene.ma").string();
    const auto save = [&] {
        Must("file -rename \"" + scene + "\"; file -save -type \"mayaAscii\"");
        std::ifstream in(folder / "userpatterns.cfg");
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    Run("getAttr k.outputGeom");
    EXPECT_EQ(save(), "as it was") << "nobody has looked at patterns";
    List("patterns.cfg", "[num_patterns] 1 [/num_patterns] [pattern] a ### pores.png [/pattern]");
    ASSERT_EQ(Ask(77), 1);
    Ask(78);
    Must("setAttr k.param2 -type \"string\" \"" + (folder / "cracks.png").string() + "\"");
    Ask(80, 1);
    Must("setAttr k.param2 -type \"string\" \"two words\"");
    Ask(85, 1);
    Ask(78);  // empty: not in a list that could be read
    EXPECT_EQ(save(),
              "[num_patterns] 2 [/num_patterns] \n[pattern] a ### pores.png [/pattern] \n"
              "[pattern] two_words ### cracks.png [/pattern] \n");
}

class PatternPicturesTest : public PictureFixture {
  protected:
    SearchPath path{kPatterns};
};

/// The sample head with a pattern over it.
TEST_F(PatternPicturesTest, APatternLiesOverTheSurfaceByItsUVs) {
    Open();
    Must("setAttr k.displayMode 2; setAttr k.uvsetpatternOpac 0.9");
    const auto draw = [&](const std::string& name) {
        const Picture picture = Draw("persp", 320, 240, 4);
        if (const char* kept = std::getenv("KELMO_KEEP_PICTURES"))
            minihost::WritePicture(std::string(kept) + "/" + name + ".png", picture);
        return picture;
    };
    const Picture bare = draw("bare");
    Ask(81, 5);
    EXPECT_EQ(Compare(draw("brush-mode"), bare, 8).pixels, 0) << "under the brush it isn't shown";
    Must("setAttr k.patternMode 2");
    const Picture checked = draw("checked");
    EXPECT_GT(Compare(checked, bare, 8).pixels, 4000);
    // What it lets through is not darkened, what it holds back is: towards green.
    long green = 0, dark = 0;
    for (size_t i = 0; i < bare.pixels.size(); i += static_cast<size_t>(bare.channels)) {
        if (std::abs(bare.pixels[i] - checked.pixels[i]) < 8) continue;
        dark += checked.pixels[i] < bare.pixels[i];
        green += bare.pixels[i + 1] - checked.pixels[i + 1] <= bare.pixels[i] - checked.pixels[i];
    }
    EXPECT_GT(dark, 4000);
    EXPECT_GT(green, dark * 9 / 10);
    Must("setAttr k.uvsetpatternOpac 0");
    EXPECT_EQ(Compare(draw("clear"), bare, 8).pixels, 0);
    Must("setAttr k.uvsetpatternOpac 0.9; setAttr k.patternUVchannel 4");
    EXPECT_EQ(Compare(draw("no-channel"), bare, 8).pixels, 0) << "there is no such channel";
    Must("setAttr k.patternUVchannel 0; setAttr k.useShaders 0");
    const Picture plain = draw("checked-plain");
    Ask(82, 5);
    EXPECT_GT(Compare(plain, draw("bare-plain"), 8).pixels, 4000) << "without shaders too";
}

TEST_F(PatternPicturesTest, StampsRaiseAndColourTheHead) {
    Open(1);
    Must("setAttr k.displayMode 2; setAttr k.pushPullMode 1; setAttr k.useFalloff2 0");
    const Picture bare = Draw("persp", 480, 360, 4);
    Ask(81, 2);
    Press(8, 2.5f, 0.4f, "0.5, 2.0, 8.0");
    Move(0.5f, 3, 8);
    Release();
    const Picture raised = Draw("persp", 480, 360, 4);
    Must(
        "setAttr k.affectGeometry 0; setAttr k.affectVertColor 1; setAttr k.patternMode 2;"
        "setAttr k.vertexPaintColor 0.7 0.2 0.1; setAttr k.vertColorStrength[8] 1");
    Ask(81, 5);
    Press(8, 3.5f, 0.4f, "0.5, 2.0, 8.0");
    Move(0.5f, 3, 8);
    Release();
    const Picture painted = Draw("persp", 480, 360, 4);
    if (const char* kept = std::getenv("KELMO_KEEP_PICTURES")) {
        minihost::WritePicture(std::string(kept) + "/raised.png", raised);
        minihost::WritePicture(std::string(kept) + "/painted.png", painted);
    }
    EXPECT_GT(Compare(raised, bare, 8).pixels, 500);
    EXPECT_GT(Compare(painted, raised, 8).pixels, 500);
}

/// Stamps that artists made, where they are.
TEST_F(PatternPicturesTest, StampsOfOthersAreRead) {
    const fs::path stamps = fs::path(paths::kSource) / "../shared/models/stamps";
    if (!fs::exists(stamps)) GTEST_SKIP() << "no stamps in ../shared/models";
    Open(1);
    Must("setAttr k.useFalloff2 0");
    for (const auto& entry : fs::directory_iterator(stamps)) {
        if (entry.path().extension() != ".png") continue;
        SCOPED_TRACE(entry.path().string());
        const int index = Ask(78);
        Must("setAttr k.param2 -type \"string\" \"" + entry.path().string() + "\"");
        Ask(80, index);
        Ask(81, index);
        ASSERT_EQ(Ask(83), index);
        const Picture before = Draw("persp", 320, 240, 4);
        Press(8, 2.5f, 0.4f, "0.5, 2.0, 8.0");
        Move(0.5f, 2.5f, 8);
        Release();
        EXPECT_GT(Compare(Draw("persp", 320, 240, 4), before, 8).pixels, 100);
        if (const char* kept = std::getenv("KELMO_KEEP_PICTURES"))
            minihost::WritePicture(
                std::string(kept) + "/stamp-" + entry.path().stem().string() + ".png",
                Draw("persp", 480, 360, 4));
        Do(6);
        EXPECT_EQ(Compare(Draw("persp", 320, 240, 4), before, 0).pixels, 0) << "undone";
    }
}

}  // namespace
}  // namespace kelmo
