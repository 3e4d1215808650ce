#include "tests/host/ToolFixture.h"

#include <gmock/gmock.h>

#include "tests/host/Replayed.h"

// The sculpt tool in a view without a window: what the pointer does becomes strokes.

namespace kelmo {
namespace {

using namespace VantrelSDK;

LPoint3 Single(const MPoint& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

/// Of the brushes: a share of the view's width.
constexpr double kSize = 0.0625;

class ToolTest : public ToolFixture {
  protected:
    LPoint3 Triple(const char* x, const char* y, const char* z) {
        return {Plug("k", x).asFloat(), Plug("k", y).asFloat(), Plug("k", z).asFloat()};
    }
    LPoint3 Normal() {
        const MPlug normal = Plug("k", "brushNorm");
        return {normal.child(0).asFloat(), normal.child(1).asFloat(), normal.child(2).asFloat()};
    }
    LPoint2 Screen() { return {Plug("k", "screenx").asFloat(), Plug("k", "screeny").asFloat()}; }

    /// What a log would say of a press: worked out from the view's camera, not from the tool.
    PressOp LoggedPress(int mode, int x, int y, double size) {
        M3dView view = M3dView::active3dView();
        MPoint origin, beside;
        MVector dir, besideDir;
        view.viewToWorld(static_cast<short>(x), static_cast<short>(y), origin, dir);
        const int width = view.portWidth(), pixels = static_cast<int>(width * size);
        view.viewToWorld(static_cast<short>(x > width / 2 ? x - pixels : x + pixels),
                         static_cast<short>(y), beside, besideDir);
        const MPoint place = Place();
        const double radius = (beside + besideDir * (place - beside).length() - place).length();
        PressOp press;
        press.mode = mode;
        press.pos = Triple("startX", "startY", "startZ");
        MDagPath camera;
        view.getCamera(camera);
        const MMatrix seen = camera.inclusiveMatrix();
        const MVector right(seen(0, 0), seen(0, 1), seen(0, 2));
        const MPoint start(press.pos.x, press.pos.y, press.pos.z);
        press.dir = Single(MPoint(dir));
        press.orth = Single(MPoint(right));
        press.radius = static_cast<float>(start.distanceTo(start + right * radius));
        press.normal = Normal();
        press.screen = Screen();
        return press;
    }
    MoveOp LoggedMove() {
        MoveOp move;
        move.pos = Single(Place());
        move.screen = Screen();
        move.normal = Normal();
        return move;
    }
    /// A stroke, and what a log says of it.
    std::vector<StrokeOp> LoggedStroke(int mode, Places places) {
        Must("KelmoToolContext -edit -brushMode " + std::to_string(mode) + " KelmoToolContext1");
        std::vector<StrokeOp> log;
        for (const auto& [x, y] : places) {
            if (log.empty()) {
                EXPECT_TRUE(Press(x, y));
                EXPECT_TRUE(InStroke());
                log.push_back(LoggedPress(mode, x, y, kSize));
            } else {
                Drag(x, y);
                log.push_back(LoggedMove());
            }
        }
        Release((places.end() - 1)->first, (places.end() - 1)->second);
        EXPECT_FALSE(InStroke());
        log.push_back(ReleaseOp{});
        return log;
    }
};

TEST_F(ToolTest, AStrokeIsTheReplayOfItsLogBitForBit) {
    for (const int levels : {0, 1}) {
        for (int i = 0; i < levels; ++i) Do(97);
        TakeTool();
        const std::vector<float> before = Surface();
        std::vector<StrokeOp> log(static_cast<size_t>(levels), SubdivideOp{SubdivideKind::Quad});
        for (const int curve : {1, 2}) log.push_back(FalloffOp{curve, {{0, 1}, {1, 0}}});
        for (const int mode : {8, 0, 2, 4, 12, 9, 16, 6, 1}) {
            // Out over the edge of the head and back: the brush keeps its depth there.
            const auto stroke = LoggedStroke(
                mode, {{200, 150}, {204, 152}, {210, 160}, {230, 170}, {390, 170}, {215, 140}});
            log.insert(log.end(), stroke.begin(), stroke.end());
            const std::vector<float> sculpted = Surface(), wanted = Replayed(kHead, log, levels);
            ASSERT_EQ(sculpted.size(), wanted.size());
            for (size_t i = 0; i < wanted.size(); ++i)
                ASSERT_EQ(sculpted[i], wanted[i]) << "mode " << mode << ", number " << i;
            EXPECT_NE(sculpted, before);
        }
        // And the host's undo takes them back, one by one, to the bit.
        for (int i = 0; i < 9; ++i) Must("undo");
        EXPECT_EQ(Surface(), before);
        LeaveTool();
    }
}

}  // namespace
}  // namespace kelmo
