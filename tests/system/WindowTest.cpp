#include "tests/system/WindowFixture.h"

#include <algorithm>
#include <cmath>

// The program's window as a person uses it: what is looked at is what it shows and what it writes.

namespace {

using namespace kelmo_tests;
using testing::HasSubstr;
using VantrelSDK::PolyMesh;

int Moved(const PolyMesh& a, const PolyMesh& b) {
    int moved = 0;
    for (size_t i = 0; i < std::min(a.positions.size(), b.positions.size()); ++i)
        moved += !(a.positions[i] == b.positions[i]);
    return moved;
}

double Farthest(const PolyMesh& a, const PolyMesh& b) {
    if (a.positions.size() != b.positions.size()) return INFINITY;
    double most = 0;
    for (size_t i = 0; i < a.positions.size(); ++i) {
        const auto d = a.positions[i] - b.positions[i];
        most = std::max(most, std::sqrt(double(d.x * d.x + d.y * d.y + d.z * d.z)));
    }
    return most;
}

/// How far the edges of a mesh bend, in all: what smoothing lowers.
double Roughness(const PolyMesh& mesh) {
    double sum = 0;
    for (int p = 0; p < mesh.NumPolygons(); ++p) {
        const size_t start = static_cast<size_t>(mesh.polygonStart[static_cast<size_t>(p)]);
        if (mesh.polygonStart[static_cast<size_t>(p) + 1] - static_cast<int>(start) != 4) continue;
        const auto at = [&](size_t c) {
            return mesh.positions[static_cast<size_t>(mesh.cornerVerts[start + c])];
        };
        const auto d = at(0) - at(1) + at(2) - at(3);
        sum += std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
    }
    return sum;
}

class KelmoWindow : public WindowFixture {};

TEST_F(KelmoWindow, BrushesChangeWhatIsUnderThem) {
    Start({head_});
    const PolyMesh before = Export();
    ASSERT_GT(before.positions.size(), 4000u);
    PolyMesh last = before;
    for (const KeySym brush : {XK_1, XK_2, XK_3, XK_4, XK_5, XK_6, XK_7, XK_8, XK_9, XK_m, XK_n}) {
        SCOPED_TRACE(brush);
        Press(brush);
        Rest();
        Stroke();
        const PolyMesh after = Export();
        ASSERT_EQ(after.positions.size(), before.positions.size());
        const int moved = Moved(last, after);
        EXPECT_GT(moved, 10);
        EXPECT_LT(moved, static_cast<int>(after.positions.size()) / 2);
        last = after;
    }
    // Erase takes it back, where it passes.
    Press(XK_0);
    for (int i = 0; i < 4; ++i) Press(XK_bracketright);
    Rest();
    for (int i = 0; i < 6; ++i) Stroke();
    const auto distance = [&before](const PolyMesh& mesh) {
        double sum = 0;
        for (size_t i = 0; i < mesh.positions.size(); ++i) {
            const auto d = mesh.positions[i] - before.positions[i];
            sum += std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
        }
        return sum;
    };
    EXPECT_LT(distance(Export()), distance(last) * 0.8);
}

TEST_F(KelmoWindow, ShiftSmoothsAndCtrlDigs) {
    Start({head_});
    const PolyMesh flat = Export();
    Stroke();
    const PolyMesh pulled = Export();
    PressWith({XK_Control_L}, XK_z);
    Hold(XK_Control_L);
    Stroke();
    LetGo(XK_Control_L);
    const PolyMesh pushed = Export();
    ASSERT_EQ(pulled.positions.size(), flat.positions.size());
    ASSERT_EQ(pushed.positions.size(), flat.positions.size());
    // What one raises the other lowers.
    double sum = 0;
    for (size_t i = 0; i < flat.positions.size(); ++i) {
        const auto a = pulled.positions[i] - flat.positions[i],
                   b = pushed.positions[i] - flat.positions[i];
        sum += a.x * b.x + a.y * b.y + a.z * b.z;
    }
    EXPECT_LT(sum, 0);
    const double rough = Roughness(pushed);
    Hold(XK_Shift_L);
    for (int i = 0; i < 3; ++i) Stroke();
    LetGo(XK_Shift_L);
    EXPECT_LT(Roughness(Export()), rough);
}

TEST_F(KelmoWindow, UndoGivesBackTheSamePicture) {
    Start({head_});
    const PolyMesh before = Export();
    std::vector<std::string> pictures{Picture()};
    for (int i = 0; i < 3; ++i) {
        Stroke(380 + 20 * i);
        pictures.push_back(Picture());
        EXPECT_NE(pictures.back(), pictures[pictures.size() - 2]);
    }
    for (int i = 2; i >= 0; --i) {
        PressWith({XK_Control_L}, XK_z);
        EXPECT_EQ(Picture(), pictures[static_cast<size_t>(i)]) << i;
    }
    EXPECT_EQ(Moved(before, Export()), 0);
}

TEST_F(KelmoWindow, AltMovesTheCameraAlone) {
    Start({head_});
    const PolyMesh before = Export();
    std::string shown = Picture();
    for (const unsigned button : {1u, 2u, 3u}) {
        To(400, 300);
        Hold(XK_Alt_L);
        Drag(400, 300, 440, 320, button);
        LetGo(XK_Alt_L);
        const std::string now = Picture();
        EXPECT_NE(now, shown) << button;
        shown = now;
    }
    To(400, 300);
    Button(4, true);
    Button(4, false);
    Rest();
    EXPECT_NE(Picture(), shown);
    for (const KeySym key : {XK_F2, XK_F3, XK_F4, XK_F1, XK_a}) {
        const std::string was = Picture();
        Press(key);
        Rest();
        EXPECT_NE(Picture(), was) << key;
    }
    EXPECT_EQ(Moved(before, Export()), 0);
}

TEST_F(KelmoWindow, AMaskFollowsTheViewWhenItStandsStill) {
    const std::string scene = folder_ / "masked.mhs";
    const std::string script = folder_.Write(
        "masked.mel", "file -import \"" + head_ +
                          "\"; select head; string $k = `Kelmo -create`; setAttr ($k + "
                          "\".dynMasksOn\") 1; file -rename \"" +
                          scene + "\"; file -save");
    const Outcome made = Kelmo("run " + script);
    ASSERT_EQ(made.code, 0) << made.text;
    Start({scene});
    const auto red = [](const std::string& pixels) {
        int count = 0;
        for (size_t i = 0; i + 3 < pixels.size(); i += 4)
            count += pixels.compare(i, 3, std::string("\0\0\xff", 3)) == 0;
        return count;
    };
    const std::string before = Picture();
    EXPECT_GT(red(before), 2000);
    Hold(XK_Alt_L);
    Drag(400, 300, 480, 320);
    LetGo(XK_Alt_L);
    const std::string after = Picture();
    EXPECT_GT(red(after), 2000);
    EXPECT_NE(after, before);
    const PolyMesh whole = Export();
    // Its middle faces the view.
    Drag(440, 330, 460, 340);
    EXPECT_EQ(Moved(whole, Export()), 0);
}

TEST_F(KelmoWindow, LevelsAreAddedAndLeft) {
    Start({head_});
    const int polygons = Export().NumPolygons();
    PressWith({XK_Control_L}, XK_l);
    EXPECT_EQ(Export().NumPolygons(), polygons * 4);
    const PolyMesh fine = Export();
    Press(XK_Page_Down);
    Rest();
    Stroke();
    EXPECT_EQ(Export().NumPolygons(), polygons) << "what is written is the level that is active";
    Press(XK_Page_Up);
    Rest();
    const PolyMesh after = Export();
    EXPECT_EQ(after.NumPolygons(), polygons * 4);
    EXPECT_GT(Moved(fine, after), 10) << "detail above follows";
}

TEST_F(KelmoWindow, TheHeldKeyChangesTheSize) {
    Start({head_});
    const PolyMesh before = Export();
    Press(XK_1);
    To(400, 300);
    Hold(XK_s);
    Drag(400, 300, 440, 300);
    LetGo(XK_s);
    Rest();
    EXPECT_EQ(Moved(before, Export()), 0);
    PressWith({XK_Control_L}, XK_q);
    EXPECT_EQ(Ended(), 0) << Told();
    // 0.08 of the view, and 40 of its 388 pixels more.
    EXPECT_THAT(Read(folder_ / "config/kelmo/preferences.json"),
                HasSubstr("\"toolSize[8]\": 0.18"));
}

TEST_F(KelmoWindow, UnsavedWorkIsAskedAbout) {
    Start({head_});
    Stroke();
    PressWith({XK_Control_L, XK_Shift_L}, XK_s);
    Type("work.mhb");
    Press(XK_Return);
    Rest();
    const std::string saved = Read(folder_ / "work.mhb");
    ASSERT_FALSE(saved.empty()) << Told();
    Stroke();
    const PolyMesh sculpted = Export();
    PressWith({XK_Control_L}, XK_q);
    EXPECT_TRUE(IsRunning()) << "there are changes";
    Press(XK_Escape);
    Rest();
    EXPECT_TRUE(IsRunning());
    PressWith({XK_Control_L}, XK_q);
    Press(XK_Return);
    EXPECT_EQ(Ended(), 0) << Told();
    EXPECT_NE(Read(folder_ / "work.mhb"), saved);
    Start({folder_ / "work.mhb"});
    // What was saved is what was sculpted, up to what frames of the surface round.
    EXPECT_LT(Farthest(sculpted, Export()), 1e-5);
}

TEST_F(KelmoWindow, TakesAnySizeAndSculptsAfterwards) {
    Start({head_});
    for (const auto& [width, height] : {std::pair{1u, 1u},
                                        {4000u, 3000u},
                                        {257u, 40u},
                                        {40u, 900u},
                                        {640u, 480u},
                                        {900u, 700u}}) {
        XResizeWindow(x_, window_, width, height);
        Rest();
        ASSERT_TRUE(IsRunning()) << width << "x" << height << Told();
    }
    const PolyMesh before = Export();
    Stroke();
    EXPECT_GT(Moved(before, Export()), 10);
}

TEST_F(KelmoWindow, PaintsColours) {
    Start({head_});
    const PolyMesh before = Export();
    Press(XK_c);
    Rest();
    const std::string plain = Picture();
    Stroke();
    const std::string painted = Picture();
    EXPECT_NE(painted, plain);
    PressWith({XK_Control_L}, XK_z);
    EXPECT_EQ(Picture(), plain);
    Stroke();
    // The button that fills.
    Drag(45, 130, 45, 130);
    EXPECT_NE(Picture(), painted);
    PressWith({XK_Control_L}, XK_z);
    EXPECT_EQ(Picture(), painted);
    PressWith({XK_Control_L}, XK_z);
    EXPECT_EQ(Picture(), plain);
    EXPECT_EQ(Moved(before, Export()), 0) << "paint moves nothing";
}

TEST_F(KelmoWindow, PatternsShapeStrokesUntilTheyAreGivenUp) {
    Start({head_});
    for (int i = 0; i < 2; ++i) PressWith({XK_Control_L}, XK_l);
    const PolyMesh before = Export();
    Stroke();
    const PolyMesh plain = Export();
    PressWith({XK_Control_L}, XK_z);
    ClickPattern();
    Stroke();
    const PolyMesh stamped = Export();
    EXPECT_GT(Moved(before, stamped), 200);
    EXPECT_GT(Farthest(plain, stamped), 1e-3);
    EXPECT_GT(Roughness(stamped), Roughness(plain) * 1.02);
    PressWith({XK_Control_L}, XK_z);
    EXPECT_EQ(Moved(before, Export()), 0);
    ClickPattern();
    Stroke();
    EXPECT_LT(Farthest(plain, Export()), 1e-4);
}

TEST_F(KelmoWindow, BrushesKeepToWhatIsSelected) {
    Start({head_});
    const PolyMesh before = Export();
    Stroke();
    const int all = Moved(before, Export());
    PressWith({XK_Control_L}, XK_z);
    Press(XK_q);
    Rest();
    Drag(400, 300, 420, 310);
    Press(XK_w);
    Rest();
    Stroke();
    const int some = Moved(before, Export());
    EXPECT_GT(some, 0);
    EXPECT_LT(some, all);
    PressWith({XK_Control_L}, XK_z);
    const std::string shown = Picture();
    Press(XK_h);
    Rest();
    EXPECT_NE(Picture(), shown) << "what is selected is hidden";
    PressWith({XK_Shift_L}, XK_h);
    EXPECT_EQ(Picture(), shown);
}

TEST_F(KelmoWindow, PlyGoesOutAndComesIn) {
    Start({head_});
    Stroke();
    const PolyMesh obj = Export(), ply = Export(".ply");
    EXPECT_EQ(obj.positions, ply.positions);
    EXPECT_EQ(obj.cornerVerts, ply.cornerVerts);
    PressWith({XK_Control_L}, XK_i);
    Type("export2.ply");
    Press(XK_Return);
    Rest();
    EXPECT_TRUE(IsRunning());
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(Export().positions, obj.positions) << "the head is sculpted still";
}

TEST_F(KelmoWindow, IdleTakesNoTimeOfTheProcessor) {
    Start({head_});
    To(450, 330);
    Rest();
    const long before = Ticks();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    EXPECT_LE(Ticks() - before, 1);
}

TEST_F(KelmoWindow, ADisplayThatGoesAwayIsTold) {
    Start({head_});
    Stroke();
    lost_ = true;
    display_.Kill();
    EXPECT_EQ(Ended(), 1);
    EXPECT_THAT(Told(), HasSubstr("the display " + display_.name()));
    EXPECT_THAT(Told(), HasSubstr("is gone"));
}

TEST_F(KelmoWindow, FilesThatCannotBeReadAreTold) {
    folder_.Write("broken.obj", "v 1 2\nf 1 2 3\n");
    Start({folder_ / "broken.obj"});
    EXPECT_THAT(Told(), HasSubstr("broken.obj"));
    EXPECT_TRUE(IsRunning());
}

TEST(KelmoWithoutWindow, SaysWhatToDo) {
    const Outcome outcome =
        Shell("DISPLAY=:987 " + std::string(paths::kProgram) + " " + kExamples + "/head.obj");
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.text, HasSubstr(":987"));
    EXPECT_THAT(outcome.text, HasSubstr("set DISPLAY"));
}

}  // namespace
