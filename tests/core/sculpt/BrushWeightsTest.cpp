#include "core/sculpt/BrushWeights.h"

#include "core/sculpt/LDynMask.h"
#include "tests/core/paint/PlainPatterns.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

struct HalfMask : LDynMask {
    float GetWeight(const LNode*, const LPoint3& p) const override { return p.x > 0 ? 0.5f : 0; }
};

/// A node in a stroke at the origin, radius 1.
std::unique_ptr<LHeadlessNode> Pressed(int mode = 8) {
    auto node = OpenNode(shapes::Grid(20, 20, false, 4));
    Stroke(*node, {.mode = mode, .pos = {0.5f, 0, 0}, .radius = 1}, {}, false);
    return node;
}

}  // namespace

TEST(BrushWeights, TheRimCountsAndBeyondIsNothing) {
    const auto node = Pressed();
    const LPoint3 c(0.5f, 0, 0);
    EXPECT_EQ(node->calcWeight2(0, c, c), 1);
    EXPECT_NEAR(node->calcWeight2(0, {1, 0, 0}, c), 0.5f, 1e-6f);
    EXPECT_GT(node->calcWeight2(0, {1.5f, 0, 0}, c), 0);
    EXPECT_EQ(node->calcWeight2(0, {1.500001f, 0, 0}, c), 0);
    node->settings().useFalloff2 = false;
    EXPECT_EQ(node->calcWeight2(0, {1.5f, 0, 0}, c), 1);
    EXPECT_EQ(node->calcWeight2(0, {1.51f, 0, 0}, c), 0);
}

TEST(BrushWeights, EachSetHasItsCurve) {
    const auto node = Pressed();
    const LPoint3 c(0.5f, 0, 0), p(0.9f, 0, 0);  // four tenths of the way
    node->settings().falloff = {{0, 1}, {0.4f, 0.2f}, {1, 0}};
    node->settings().falloff2 = {{0, 0}, {1, 1}};
    node->UpdateFalloffs();
    EXPECT_NEAR(node->calcWeight(0, p, c), 0.2f, 0.02f);
    EXPECT_NEAR(node->calcWeight2(0, p, c), 0.4f, 1e-5f);
    EXPECT_NEAR(node->calcWeight2tex(p, c), 0.4f, 1e-5f);
    // The linear curve, with its ends where the settings have them.
    node->settings().useRamp = false;
    node->settings().falloffMin = 0.5f;
    node->settings().falloffMax = 0.7f;
    EXPECT_NEAR(node->calcWeight(0, p, c), 0.5f + 0.6f * 0.2f, 1e-6f);
}

TEST(BrushWeights, PatternsLieInTheStrokesFrame) {
    const auto node = Pressed();
    // A ramp along u, so that the frame shows: (1 + u) / 2, in steps of a sixtieth.
    GivePattern(*node, 256, 1, [](int x, int) { return std::array{x, x, x, 255}; });
    node->settings().useFalloff = node->settings().useFalloff2 = false;
    const LPoint3 c(0.5f, 0, 0);
    EXPECT_NEAR(node->calcWeight2(0, {0.8f, 0.2f, 0}, c), 0.65f, 0.02f);
    EXPECT_NEAR(node->calcWeight2tex({0.8f, 0.2f, 0}, c), 1, 1e-6f);
    // Without falloff a symmetric drag weighs 1 whatever the pattern, a brush what the pattern
    // says.
    node->settings().symmetry = 1;
    EXPECT_EQ(node->calcWeight(0, {0.8f, 0, 0}, c), 1);
    EXPECT_NEAR(node->calcWeight2(0, {0.8f, 0, 0}, c), 0.65f, 0.02f);
    EXPECT_NEAR(node->calcWeight2(0, {-0.8f, 0, 0}, c), 0.65f, 0.02f) << "mirrored with the frame";
}

TEST(BrushWeights, MasksScaleAndTheActiveOneCounts) {
    HalfMask mask;
    const auto node = OpenNode(shapes::Grid(20, 20, false, 4));
    node->AddMask(&mask);
    EXPECT_EQ(node->GetMask(), nullptr);
    node->settings().dynMasksOn = 1;
    EXPECT_EQ(node->GetMask(), &mask);
    const std::vector<LPoint3> before = Surface(*node);
    Stroke(*node, {.mode = 8, .pos = {0, 0, 0}, .radius = 1}, {{0.01f, 0, 0}});
    const std::vector<LPoint3> masked = Deltas(*node);
    node->UndoStroke();
    node->settings().dynMaskActive = 1;  // there is no such mask
    Stroke(*node, {.mode = 8, .pos = {0, 0, 0}, .radius = 1}, {{0.01f, 0, 0}});
    for (size_t v = 0; v < before.size(); ++v)
        EXPECT_NEAR(masked[v].z, before[v].x > 0 ? 0.5f * Deltas(*node)[v].z : 0, 1e-6f);
}

TEST(BrushWeights, SnappingFindsTheSurfaceAndRemembersIt) {
    const auto node = Pressed();
    node->settings().symmetry = 3;
    node->settings().doSymmetrySnapping = true;
    node->settings().symmetrySnapRadius = 0.6f;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(node->MirrorPosition({0.11f, 0.1f, 0.5f}).Equals({0.11f, 0.1f, 0}, 1e-6f));
    EXPECT_EQ(node->MirrorPosition({0, 0, 0.7f}), LPoint3(0, 0, -0.7f))
        << "too far: the plain image";
    EXPECT_EQ(node->MirrorPosition({0, 0, 0.7f}), LPoint3(0, 0, -0.7f));
}

TEST(BrushWeights, StampsAreDueAlongTheStroke) {
    const auto node = Pressed();
    float radius = -1;
    EXPECT_FALSE(node->adjustBrushPattern(radius)) << "the pointer stands still";
    node->Transform({0.7f, 0, 0}, {0.1f, 0}, {0, 0, 1});
    EXPECT_TRUE(node->adjustBrushPattern(radius));
    EXPECT_EQ(radius, -1);
    EXPECT_EQ(node->laxial(), LPoint3(1, 0, 0)) << "the frame follows the stroke";
    node->settings().randPatternScale = node->settings().randPatternRotation =
        node->settings().randPatternOffset = true;
    EXPECT_TRUE(node->adjustBrushPattern(radius));
    EXPECT_EQ(radius, 1);
    EXPECT_LE(node->lradius(), 1);
    EXPECT_NEAR(node->laxial() % node->lorth(), 0, 1e-5f);

    const auto chain = Pressed();
    chain->settings().useChainPatterns = true;
    chain->Transform({0.6f, 0, 0}, {0.1f, 0}, {0, 0, 1});
    EXPECT_FALSE(chain->adjustBrushPattern(radius)) << "the first step lays none";
    chain->Transform({2.5f, 0, 0}, {0.2f, 0}, {0, 0, 1});
    EXPECT_FALSE(chain->adjustBrushPattern(radius)) << "1.9 radii on";
    chain->Transform({2.7f, 0, 0}, {0.2f, 0}, {0, 0, 1});
    EXPECT_TRUE(chain->adjustBrushPattern(radius));
}
