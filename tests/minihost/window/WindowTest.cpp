#include "minihost/window/Window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "maya/M3dView.h"
#include "maya/MEvent.h"
#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/view/Camera.h"
#include "minihost/view/ViewWindow.h"
#include "tests/TestDisplay.h"

#include <X11/Intrinsic.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

// A window on a display of its own, with what the pointer and the keys do there.

namespace {

using kelmo_tests::TestDisplay;
using minihost::Host;
using minihost::WindowEvent;
using testing::ElementsAre;

constexpr int kLeft = 200, kWidth = 640, kHeight = 480;

/// A panel at the left side, which keeps what it is told.
class Panel : public minihost::Surroundings {
  public:
    minihost::WindowPlace ViewPlace(int width, int height) override {
        const int left = std::min(kLeft, width - 1);
        return {left, 0, width - left, height};
    }
    bool Handle(const WindowEvent& event) override {
        events.push_back(event);
        return false;
    }
    bool TakesAll() override { return takesAll; }
    bool Draw(int, int) override {
        ++frames;
        return false;
    }
    void CloseAsked() override { ++closes; }
    void DisplayLost(const std::string&) override {}

    int Count(WindowEvent::Kind kind) const {
        return static_cast<int>(std::ranges::count(events, kind, &WindowEvent::kind));
    }

    std::vector<WindowEvent> events;
    bool takesAll = false;
    int frames = 0, closes = 0;
};

/// A tool that writes down what it is told.
struct Notes {
    std::vector<std::string> lines;
    std::vector<std::pair<short, short>> places;
};

class NotingTool : public MPxContext {
  public:
    explicit NotingTool(Notes& notes) : notes_(notes) {}
    MStatus doPress(MEvent& event) override { return Note("press", event); }
    MStatus doDrag(MEvent& event) override { return Note("drag", event); }
    MStatus doRelease(MEvent& event) override { return Note("release", event); }

  private:
    MStatus Note(const std::string& what, MEvent& event) {
        short x = 0, y = 0;
        event.getPosition(x, y);
        notes_.places.push_back({x, y});
        notes_.lines.push_back(
            what + (event.mouseButton() == MEvent::kMiddleMouse ? " middle" : "") +
            (event.isModifierShift() ? " shift" : "") + (event.isModifierControl() ? " ctrl" : ""));
        return MS::kSuccess;
    }
    Notes& notes_;
};

class WindowTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!display_.isOpen()) GTEST_SKIP() << "left out: Xvfb is not installed";
        Host& host = Host::Get();
        host.NewScene();
        host.interpreter.Execute("polySphere -name ball");
        std::string error;
        window_ = minihost::Window::Open({"test", kWidth, kHeight, "persp", 0}, panel_, error);
        ASSERT_TRUE(window_) << error;
        input_ = XOpenDisplay(nullptr);
        host.tools.Add("noting", "noting1", std::make_unique<NotingTool>(notes_));
        host.tools.SetTo("noting1");
        Settle();
        panel_.events.clear();
    }
    void TearDown() override {
        Host::Get().tools.RemoveOf("noting");
        window_.reset();
        if (input_) XCloseDisplay(input_);
    }

    /// Sends what was asked for, and lets the window take it.
    void Settle() {
        if (input_) XSync(input_, False);
        int turns = 8;
        const std::function<void()> count = [&] {
            if (--turns == 0) return window_->Close();
            Host::Get().idle.Add(count);
        };
        Host::Get().idle.Add(count);
        window_->Run();
    }
    void To(int x, int y) { XTestFakeMotionEvent(input_, 0, x, y, 0); }
    void Button(unsigned button, bool down) { XTestFakeButtonEvent(input_, button, down, 0); }
    void Key(KeySym key, bool down) {
        XTestFakeKeyEvent(input_, XKeysymToKeycode(input_, key), down, 0);
    }
    minihost::Camera camera() { return minihost::Camera(*window_->view().camera()); }

    TestDisplay display_;
    Panel panel_;
    Notes notes_;
    std::unique_ptr<minihost::Window> window_;
    Display* input_ = nullptr;
};

TEST_F(WindowTest, AStrokeArrivesPointByPoint) {
    M3dView view = M3dView::active3dView();
    ASSERT_TRUE(view.widget() && view.display() && view.window());
    EXPECT_EQ(view.portWidth(), kWidth - kLeft);
    int hovers = 0;
    XtAddEventHandler(
        view.widget(), PointerMotionMask, False,
        [](Widget, XtPointer count, XEvent*, Boolean*) { ++*static_cast<int*>(count); }, &hovers);
    To(kLeft + 20, 100);
    Button(1, true);
    // A frame takes long compared to these: they wait in a queue, and none is lost.
    for (int i = 1; i <= 100; ++i) To(kLeft + 20 + i, 100 + i);
    Button(1, false);
    Settle();
    ASSERT_EQ(notes_.lines.size(), 102u);
    EXPECT_EQ(hovers, 101);
    EXPECT_EQ(notes_.lines.front(), "press");
    EXPECT_EQ(notes_.lines.back(), "release");
    for (int i = 0; i <= 100; ++i)
        EXPECT_EQ(notes_.places[static_cast<size_t>(i)],
                  std::pair(static_cast<short>(20 + i), static_cast<short>(kHeight - 1 - 100 - i)));
    EXPECT_EQ(notes_.places[101], notes_.places[100]);
}

TEST_F(WindowTest, ModifiersAndButtonsAreTold) {
    To(kLeft + 50, 50);
    Key(XK_Shift_L, true);
    Button(1, true);
    Button(3, true);  // one drag at a time
    Button(3, false);
    Button(1, false);
    Key(XK_Shift_L, false);
    Key(XK_Control_L, true);
    Button(2, true);
    Button(2, false);
    Key(XK_Control_L, false);
    Settle();
    EXPECT_THAT(notes_.lines, ElementsAre("press shift", "release shift", "press middle ctrl",
                                          "release middle ctrl"));
    EXPECT_EQ(panel_.Count(WindowEvent::Kind::KeyDown), 2);
    EXPECT_EQ(panel_.Count(WindowEvent::Kind::KeyUp), 2);
}

TEST_F(WindowTest, AltAndTheWheelAreTheCameras) {
    const MMatrix before = camera().ModelView();
    const MPoint middle = MPoint(0, 0, 0) * before;
    Key(XK_Alt_L, true);
    To(kLeft + 100, 100);
    Button(1, true);
    To(kLeft + 160, 130);
    Button(1, false);
    Settle();
    const MMatrix turned = camera().ModelView();
    EXPECT_FALSE(turned == before);
    // What it turns about stays where it was seen.
    EXPECT_LT((MPoint(0, 0, 0) * turned - middle).length(), 1e-9);
    Button(2, true);
    To(kLeft + 260, 130);
    Button(2, false);
    Settle();
    // A hundred pixels to the right is what the middle moves by.
    MPoint place;
    ASSERT_TRUE(window_->view().Project(MPoint(0, 0, 0), place));
    EXPECT_NEAR(place.x, (kWidth - kLeft) / 2. + 100, 0.01);
    Button(3, true);
    To(kLeft + 360, 130);
    Button(3, false);
    Key(XK_Alt_L, false);
    Settle();
    const double near = (MPoint(0, 0, 0) * camera().ModelView()).z;
    EXPECT_GT(near, middle.z) << "a drag to the right comes closer";
    Button(4, true);
    Button(4, false);
    Settle();
    EXPECT_NEAR((MPoint(0, 0, 0) * camera().ModelView()).z, near * 0.9, 1e-6);
    EXPECT_TRUE(notes_.lines.empty());
}

TEST_F(WindowTest, OutsideTheViewIsTheSurroundings) {
    To(50, 60);
    Button(1, true);
    To(kLeft + 100, 70);  // a drag that began in the panel stays there
    Button(1, false);
    Settle();
    EXPECT_TRUE(notes_.lines.empty());
    ASSERT_EQ(panel_.Count(WindowEvent::Kind::Press), 1);
    ASSERT_EQ(panel_.Count(WindowEvent::Kind::Release), 1);
    const auto last =
        std::ranges::find(panel_.events, WindowEvent::Kind::Release, &WindowEvent::kind);
    EXPECT_EQ(std::pair(last->x, last->y), std::pair(kLeft + 100, 70));
    panel_.takesAll = true;
    window_->Redraw();
    Settle();
    To(kLeft + 110, 80);
    Button(1, true);
    Button(1, false);
    Settle();
    EXPECT_TRUE(notes_.lines.empty());
    EXPECT_EQ(panel_.Count(WindowEvent::Kind::Press), 2);
}

TEST_F(WindowTest, TheWindowShowsWhatAPictureShows) {
    const minihost::Picture shown = window_->Read();
    ASSERT_EQ(shown.width, kWidth);
    const minihost::Picture alone = window_->view().Read();
    ASSERT_EQ(alone.width, kWidth - kLeft);
    for (int y = 0; y < kHeight; y += 7)
        for (int x = 0; x < alone.width; x += 5) {
            const auto at = [](const minihost::Picture& p, int px, int py) {
                return p
                    .pixels[static_cast<size_t>(py) * p.RowBytes() + static_cast<size_t>(px) * 3];
            };
            ASSERT_EQ(at(shown, x + kLeft, y), at(alone, x, y)) << x << " " << y;
        }
}

TEST_F(WindowTest, DrawsOnlyWhatChanged) {
    int drawn = 0;
    window_->onFrame = [&drawn](const minihost::Window::FrameTimes& times) {
        drawn += times.drawn;
    };
    const int frames = panel_.frames;
    Settle();
    EXPECT_EQ(panel_.frames, frames) << "nothing has changed";
    window_->Redraw();
    Settle();
    EXPECT_EQ(panel_.frames, frames + 1);
    EXPECT_EQ(drawn, 0);
    Host::Get().interpreter.Execute("move 1 0 0 ball");
    Settle();
    EXPECT_EQ(drawn, 1);
}

TEST_F(WindowTest, TakesAnySize) {
    Display* display = M3dView::active3dView().display();
    Widget shell = M3dView::active3dView().widget();
    while (XtParent(shell)) shell = XtParent(shell);
    for (const auto& [width, height] :
         {std::pair{1, 1}, {333, 777}, {4000, 3000}, {2, 900}, {701, 3}}) {
        XResizeWindow(display, XtWindow(shell), static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        XSync(display, False);
        Settle();
        EXPECT_EQ(window_->width(), width);
        EXPECT_EQ(window_->height(), height);
        EXPECT_EQ(window_->view().width(), std::max(1, width - std::min(kLeft, width - 1)));
        EXPECT_EQ(window_->view().height(), height);
    }
}

TEST_F(WindowTest, ANewSceneIsShown) {
    Host::Get().NewScene();
    Settle();
    EXPECT_TRUE(window_->view().camera()->isInScene());
    EXPECT_EQ(window_->LookThrough("top"), "");
    Settle();
    EXPECT_EQ(window_->camera(), "top");
    EXPECT_NE(window_->LookThrough("nobody"), "");
    EXPECT_EQ(window_->camera(), "top");
}

TEST(NoWindow, SaysWhyThereIsNone) {
    setenv("DISPLAY", ":987", 1);
    Panel panel;
    std::string error;
    EXPECT_FALSE(minihost::Window::Open({}, panel, error));
    EXPECT_THAT(error, testing::HasSubstr(":987"));
    unsetenv("DISPLAY");
    EXPECT_FALSE(minihost::Window::Open({}, panel, error));
    EXPECT_THAT(error, testing::HasSubstr("no display"));
}

}  // namespace
