#include "core/sculpt/ScreenMask.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

using namespace VantrelSDK;

namespace {

/// A view down the z axis from z = 3, a right angle wide.
std::array<double, 16> Perspective() {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, -1, 0, 0, 1, 3};
}

}  // namespace

RC_GTEST_PROP(ScreenMask, APositionHasTheValueOfThePixelThatShowsIt, ()) {
    const int width = *rc::gen::inRange(1, 30), height = *rc::gen::inRange(1, 30);
    ScreenMask mask{width, height, Perspective(), {}};
    const auto pixels = *rc::gen::container<std::vector<uint8_t>>(
        static_cast<size_t>(mask.NumPixels()), rc::gen::inRange<uint8_t>(0, 2));
    mask.runs = RunsOf(pixels);
    std::string error;
    RC_ASSERT(mask.Check(error));
    const ScreenMaskReader reader(mask);
    for (int i = 0; i < 50; ++i) {
        const auto any = [] { return *rc::gen::inRange(-500, 501) / 100.0f; };
        const LPoint3 p(any(), any(), any());
        float wanted = 0;
        if (p.z < 3) {
            const double x = std::floor((p.x / (3.0 - p.z) + 1) / 2 * width),
                         y = std::floor((p.y / (3.0 - p.z) + 1) / 2 * height);
            const double pixel = y * (width - 1) + x;
            if (x >= 0 && y >= 0 && x < width && y < height &&
                pixel < static_cast<double>(pixels.size()))
                wanted = pixels[static_cast<size_t>(pixel)] ? 0 : 1;
        }
        RC_ASSERT(reader.WeightAt(p) == wanted);
    }
}

TEST(ScreenMask, RunsMakeUpThePicture) {
    std::string error;
    EXPECT_TRUE((ScreenMask{5, 4, {}, {0, 7, 5}}.Check(error)));
    for (const ScreenMask& wrong : {ScreenMask{5, 4, {}, {11}}, ScreenMask{5, 4, {}, {}},
                                    ScreenMask{2, 2, {}, {2147483647, 2147483647, 2147483647}}}) {
        EXPECT_FALSE(wrong.Check(error));
        EXPECT_NE(error.find("must make up"), error.npos) << error;
    }
    // One of no pixels lets nothing through, and nothing that is not a number does.
    EXPECT_EQ(ScreenMaskReader().WeightAt({}), 0);
    const ScreenMaskReader open(ScreenMask{2, 2, Perspective(), {1}});
    EXPECT_EQ(open.WeightAt({-0.5f, -0.5f, 0}), 1);
    EXPECT_EQ(open.WeightAt({std::nanf(""), 0, 0}), 0);
    EXPECT_EQ(open.WeightAt({0, 0, std::nanf("")}), 0);
}
