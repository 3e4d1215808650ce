#include "tests/host/ToolFixture.h"

#include <array>

#include "host/tools/Tablet.h"
#include "minihost/window/Window.h"
#include "tests/TestDisplay.h"

// Last, since their macros are names of ours.
#include <X11/Intrinsic.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

// The sculpt tool in a window of a display: what a person's hands do.

namespace kelmo {
namespace {

constexpr int kWidth = 400, kHeight = 300;

/// A window that is its view.
class NoPanels : public minihost::Surroundings {
  public:
    minihost::WindowPlace ViewPlace(int width, int height) override {
        return {0, 0, width, height};
    }
    bool Handle(const minihost::WindowEvent&) override { return false; }
    bool TakesAll() override { return false; }
    bool Draw(int, int) override { return false; }
    void CloseAsked() override {}
    void DisplayLost(const std::string&) override {}
};

class ToolWindowTest : public ToolFixture {
  protected:
    void SetUp() override {
        if (!display_.isOpen()) GTEST_SKIP() << "left out: Xvfb is not installed";
        ToolFixture::SetUp();
        std::string error;
        window_ = minihost::Window::Open({"test", kWidth, kHeight, "front", 0}, panels_, error);
        ASSERT_TRUE(window_) << error;
        input_ = XOpenDisplay(nullptr);
        Settle();
    }
    void TearDown() override {
        if (input_) LeaveTool();
        window_.reset();
        if (input_) XCloseDisplay(input_);
    }
    /// Lets the window take what was done.
    void Settle() {
        XSync(input_, False);
        int turns = 8;
        const std::function<void()> count = [&] {
            if (--turns == 0) return window_->Close();
            host.idle.Add(count);
        };
        host.idle.Add(count);
        window_->Run();
    }
    /// In the view's own pixels, y upward.
    void To(int x, int y) { XTestFakeMotionEvent(input_, 0, x, kHeight - 1 - y, 0); }
    void Button(bool down) { XTestFakeButtonEvent(input_, 1, down, 0); }
    void Key(KeySym key, bool down) {
        XTestFakeKeyEvent(input_, XKeysymToKeycode(input_, key), down, 0);
    }
    /// Of a pixel: red, green, blue, bright or not.
    std::array<int, 3> ColorAt(int x, int y) {
        const minihost::Picture picture = window_->Read();
        const int at = ((kHeight - 1 - y) * picture.width + x) * picture.channels;
        std::array<int, 3> color;
        for (int c = 0; c < 3; ++c) color[c] = picture.pixels[static_cast<size_t>(at + c)] > 127;
        return color;
    }

    kelmo_tests::TestDisplay display_;
    NoPanels panels_;
    std::unique_ptr<minihost::Window> window_;
    Display* input_ = nullptr;
};

TEST_F(ToolWindowTest, HoverMovesTheBrushAndADragSculpts) {
    Must("KelmoSculpt -mode 1");
    Settle();
    To(200, 150);
    Settle();
    M3dView view = M3dView::active3dView();
    ASSERT_TRUE(view.widget());
    const auto expectAt = [&](int x, int y) {
        short seenx = 0, seeny = 0;
        view.worldToView(Place(), seenx, seeny);
        EXPECT_NEAR(seenx, x, 1);
        EXPECT_NEAR(seeny, y, 1);
    };
    expectAt(200, 150);
    EXPECT_TRUE(IsOutlined());
    const std::vector<float> before = Surface();
    To(180, 140);
    Settle();
    expectAt(180, 140);
    EXPECT_EQ(Surface(), before) << "nobody pressed";
    Button(true);
    for (int i = 0; i <= 40; i += 4) To(180 + i, 140 + i / 4);
    Settle();
    EXPECT_TRUE(InStroke());
    expectAt(220, 150);
    Button(false);
    Settle();
    EXPECT_FALSE(InStroke());
    EXPECT_NE(Surface(), before);
    Must("undo");
    EXPECT_EQ(Surface(), before);
}

/// What the keys would make of the brush is seen in its outline's colour.
TEST_F(ToolWindowTest, TheOutlineShowsTheKeys) {
    Must("KelmoSculpt -mode 1");
    To(200, 150);
    Settle();
    using Color = std::array<int, 3>;
    // The cross at its middle.
    EXPECT_EQ(ColorAt(200, 150), (Color{0, 1, 0}));
    Key(XK_Shift_L, true);
    Settle();
    EXPECT_EQ(ColorAt(200, 150), (Color{0, 1, 1}));
    Key(XK_Shift_L, false);
    Key(XK_Control_L, true);
    Settle();
    EXPECT_EQ(ColorAt(200, 150), (Color{1, 0, 0}));
    Key(XK_Control_L, false);
    Key(XK_Alt_L, true);
    To(201, 150);
    Settle();
    EXPECT_FALSE(IsOutlined()) << "Alt is the camera's";
    Key(XK_Alt_L, false);
    To(200, 150);
    Settle();
    EXPECT_TRUE(IsOutlined());
}

TEST_F(ToolWindowTest, EscapeTakesAStrokeBack) {
    Must("KelmoSculpt -mode 1");
    Settle();
    const std::vector<float> before = Surface();
    To(200, 150);
    Button(true);
    To(210, 150);
    To(220, 150);
    Settle();
    EXPECT_TRUE(InStroke());
    Key(XK_Escape, true);
    Key(XK_Escape, false);
    To(230, 150);
    Button(false);
    Settle();
    EXPECT_FALSE(InStroke());
    EXPECT_EQ(Surface(), before);
}

TEST_F(ToolWindowTest, ThePreviewFollowsTheCurve) {
    Must(
        "global string $curve; global int $previews;"
        "global proc string KelmoGetFalloffCurve2() { global string $curve; return $curve; }"
        "global proc KelmoUpdateBrushPreview() { global int $previews; $previews++; }");
    TakeTool();
    Must("global int $previews; $previews = 0");
    for (const char* curve : {"a", "a", "b", "b", "b"}) {
        Must(std::string("global string $curve; $curve = \"") + curve + "\"");
        To(200, 150);
        To(210, 150);
        Settle();
    }
    EXPECT_EQ(Run("global int $previews; $previews"), "2");
}

/// With no stylus on the display nothing fails, and a mouse presses with all it has.
TEST_F(ToolWindowTest, WithoutAStylusTheMouseSculpts) {
    const auto sculpted = [&](int usesTablet) {
        Must("global proc int KelmoGetUseTabletPref() { return " + std::to_string(usesTablet) +
             "; }");
        Run("Kelmo -readPrefs");
        Must("KelmoSculpt -mode 1");
        Settle();
        To(180, 140);
        Button(true);
        for (int i = 0; i <= 20; i += 4) To(180 + i, 140);
        Button(false);
        Settle();
        const std::vector<float> after = Surface();
        Must("undo");
        LeaveTool();
        return after;
    };
    const std::vector<float> mouse = sculpted(0);
    // It is looked for once, and again when the preference came on again.
    for (const auto& [usesTablet, looked] :
         {std::pair{1, true}, {1, false}, {0, false}, {1, true}}) {
        told.text.clear();
        EXPECT_EQ(sculpted(usesTablet), mouse);
        EXPECT_EQ(told.Has("Can not load tablet stuff"), looked);
    }
    Must("global proc int KelmoGetUseTabletPref() { return 0; }");
    Run("Kelmo -readPrefs");
}

/// While Alt is held, and so the view moved, a large mesh shows a level that draws fast.
TEST_F(ToolWindowTest, AltShowsACoarserLevelOfALargeMesh) {
    Must("global proc int KelmoGetNfDisplayFallbackPref() { return 15000; }");
    Run("Kelmo -readPrefs");
    Do(97);
    Must("KelmoSculpt -mode 1; setAttr k.displayMode 1");
    To(5, 5);
    Settle();
    const std::vector<unsigned char> fine = window_->Read().pixels;
    Key(XK_Alt_L, true);
    Settle();
    EXPECT_TRUE(window_->Read().pixels != fine);
    Key(XK_Alt_L, false);
    Settle();
    EXPECT_TRUE(window_->Read().pixels == fine);
    Must("global proc int KelmoGetNfDisplayFallbackPref() { return 2250000; }");
    Run("Kelmo -readPrefs");
}

/// The window may go while the tool is on.
TEST_F(ToolWindowTest, WindowsMayGo) {
    Must("KelmoSculpt -mode 1");
    To(200, 150);
    Settle();
    window_.reset();
    Look("front", kWidth, kHeight);
    Stroke({{200, 150}, {210, 150}});
    LeaveTool();
    EXPECT_EQ(Count("kelmoTool"), 0);
}

TEST(Tablet, PressureIsAShareOfTheAxis) {
    const VantrelSDK::TabletAxis axis{100, 1000};
    EXPECT_EQ(axis.Pressure(100), 0);
    EXPECT_EQ(axis.Pressure(600), 0.5f);
    EXPECT_EQ(axis.Pressure(1100), 1);
    EXPECT_EQ(axis.Pressure(-5), 0);
    EXPECT_EQ(axis.Pressure(5000), 1);
}

TEST(Tablet, AClickOfAMouseHasFullPressure) {
    using namespace VantrelSDK;
    Tablet_SetLMB(false);
    Tablet_SetPressure(0.0005f);
    EXPECT_EQ(Tablet_GetNormalPressure(), 0.0005f);
    Tablet_SetLMB(true);
    EXPECT_EQ(Tablet_GetNormalPressure(), 1);
    Tablet_SetPressure(0.25f);
    EXPECT_EQ(Tablet_GetNormalPressure(), 0.25f);
    Tablet_SetLMB(false);
    Tablet_SetPressure(1);
    EXPECT_FALSE(Tablet_Loaded() || Tablet_Failed());
    EXPECT_FALSE(Tablet_Load()) << "there is no window";
    EXPECT_FALSE(Tablet_Failed());
}

}  // namespace
}  // namespace kelmo
