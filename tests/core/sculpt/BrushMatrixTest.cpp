#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

#include <array>

#include "core/sculpt/BrushMode.h"
#include "tests/core/paint/PlainPatterns.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

// Every mode against every kind of mesh and setting: what holds for all of them.

namespace {

/// Reads all settings that a brush knows from one random source.
void RandomSettings(LHeadlessNode& node, std::mt19937& random) {
    LNodeSettings& s = node.settings();
    const auto maybe = [&] { return random() % 2 == 0; };
    s.symmetry = 1 + static_cast<int>(random() % 4);
    s.doSymmetrySnapping = maybe();
    s.symmetrySnapRadius = 0.5f;
    s.pushPullMode = static_cast<int>(random() % 3);
    s.accumulate = maybe();
    s.useFalloff = random() % 4 != 0;
    s.useFalloff2 = random() % 4 != 0;
    s.useRamp = maybe();
    s.useRamp2 = maybe();
    s.brushSmoothIterations = static_cast<int>(random() % 4);
    s.sculptSmoothIterations = static_cast<int>(random() % 3);
    s.useSelected = random() % 4 == 0;
    node.UpdateFalloffs();
    // A pattern, as any mode lays it.
    s.patternMode = static_cast<int>(random() % 3);
    s.randPatternRotation = maybe();
    s.randPatternOffset = maybe();
    s.randPatternScale = maybe();
    s.useChainPatterns = random() % 8 == 0;
    if (!node.lpatterns())
        GivePattern(node, 30, 20, [](int x, int y) { return std::array{x * 8, y * 12, 90, 255}; });
    node.lpatterns()->SetAciveIndex(random() % 3 == 0 ? 0 : -1);
}

Press RandomPress(LHeadlessNode& node, std::mt19937& random) {
    std::uniform_real_distribution<float> unit(-1, 1);
    const std::vector<LPoint3> surface = Surface(node);
    Press press;
    press.mode = GeometryModes()[random() % GeometryModes().size()];
    press.pos = surface[random() % surface.size()];
    // In braces the numbers come in order.
    press.dir = Normalized(LPoint3{unit(random), unit(random), unit(random)});
    press.orth = Normalized(press.dir ^ LPoint3{unit(random), 1, unit(random)});
    press.normal = -press.dir;
    press.radius = 0.1f + 0.25f * (1 + unit(random));
    return press;
}

std::vector<LPoint3> RandomMoves(const LPoint3& from, std::mt19937& random) {
    std::uniform_real_distribution<float> unit(-1, 1);
    std::vector<LPoint3> moves;
    LPoint3 p = from, step{unit(random), unit(random), unit(random)};
    const int count = 1 + static_cast<int>(random() % 5);
    for (int i = 0; i < count; ++i) {
        // Mostly onwards, at times a sharp turn or the same place again.
        if (random() % 4 == 0) step = {unit(random), unit(random), unit(random)};
        if (random() % 8 != 0) p += step * 0.12f;
        moves.push_back(p);
    }
    return moves;
}

const PolyMesh& RandomShape(std::mt19937& random) {
    static const std::vector<PolyMesh> meshes = [] {
        std::vector<PolyMesh> all = {Boulder(4), shapes::Torus(24, 12), shapes::Grid(20, 20)};
        for (const shapes::Shape& shape : shapes::ShapesWithFaces()) all.push_back(shape.mesh);
        return all;
    }();
    return meshes[random() % 2 ? random() % 3 : random() % meshes.size()];
}

}  // namespace

RC_GTEST_PROP(BrushMatrix, UndoGivesBackTheBitsAndCachesFollow, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const PolyMesh& shape = RandomShape(random);
    const int workers = 1 + static_cast<int>(random() % 2), levels = static_cast<int>(random() % 3);
    const auto node = OpenNode(shape, workers, levels);
    if (random() % 3 == 0) {
        node->lobject()->HideFace(0);
        node->lobject()->UpdateLevelVisibility();
        node->UpdateHidden();
    }
    if (random() % 3 == 0) node->lobject()->SelectFace(0, true, true);
    std::vector<std::vector<LPoint3>> states = {Deltas(*node)};
    const int strokes = 1 + static_cast<int>(random() % 4);
    for (int i = 0; i < strokes; ++i) {
        RandomSettings(*node, random);
        const Press press = RandomPress(*node, random);
        Stroke(*node, press, RandomMoves(press.pos, random));
        RC_ASSERT(CheckCaches(*node) == "");
        states.push_back(Deltas(*node));
    }
    for (int i = strokes; i-- > 0;) {
        node->UndoStroke();
        RC_ASSERT(SameBits(Deltas(*node), states[i]));
        RC_ASSERT(CheckCaches(*node) == "");
    }
    RC_ASSERT(!node->UndoStroke());
}

RC_GTEST_PROP(BrushMatrix, AnyNumberOfWorkersGivesTheSameBits, ()) {
    const unsigned seed = *rc::gen::arbitrary<unsigned>();
    std::vector<LPoint3> first;
    for (const int workers : {1, 2, 8}) {
        std::mt19937 random(seed);
        const auto node = OpenNode(Boulder(6), workers);  // 32768 triangles: enough for all workers
        for (int i = 0; i < 2; ++i) {
            RandomSettings(*node, random);
            Press press = RandomPress(*node, random);
            press.radius += 0.5f;
            Stroke(*node, press, RandomMoves(press.pos, random));
        }
        if (workers == 1) first = Deltas(*node);
        RC_ASSERT(SameBits(Deltas(*node), first));
    }
}

TEST(BrushMatrix, EachModeDoesSomethingWithinItsReachAndNothingBeyond) {
    for (const int mode : GeometryModes())
        for (const int symmetry : {1, 2, 3, 4}) {
            const auto node = OpenNode(Boulder(5));
            node->settings().symmetry = symmetry;
            const std::vector<LPoint3> before = Surface(*node);
            Press press{.mode = mode, .pos = before[7]};
            // The blend modes and the eraser take back what another brush has done.
            const bool restores = mode == 7 || mode == 14 || mode == 19;
            if (restores)
                Stroke(*node, {.mode = 8, .pos = press.pos}, Path(press.pos, {0.02f, 0, 0}, 3));
            const std::vector<LPoint3> start = Surface(*node), deltas = Deltas(*node);
            const std::vector<LPoint3> path = Path(press.pos, {0.03f, 0.01f, 0.02f}, 6);
            Stroke(*node, press, path);
            const std::vector<LPoint3> after = Surface(*node);
            int moved = 0;
            for (size_t v = 0; v < after.size(); ++v) {
                if (node->GetDelta()->MorphVector(static_cast<int>(v)) == deltas[v]) continue;
                ++moved;
                float nearest = 1e9f;
                for (const LPoint3& p : path)
                    for (const int axis : {-1, symmetry - 1}) {
                        const LPoint3 centre =
                            axis < 3 && axis >= 0
                                ? LPoint3(axis == 0 ? -p.x : p.x, axis == 1 ? -p.y : p.y,
                                          axis == 2 ? -p.z : p.z)
                                : p;
                        nearest = std::min(nearest, (start[v] - centre).Len());
                    }
                EXPECT_LT(nearest, press.radius * 1.6f) << FindBrushMode(mode)->name;
            }
            EXPECT_GT(moved, 20) << FindBrushMode(mode)->name << ", symmetry " << symmetry;
            EXPECT_EQ(moved, node->GetNumTouched());
            if (restores) {
                EXPECT_LT((after[7] - before[7]).Len(), (start[7] - before[7]).Len());
            }
        }
}

TEST(BrushMatrix, APressAloneAndAffectOffChangeNothing) {
    for (const int mode : GeometryModes()) {
        const auto node = OpenNode(Boulder(3));
        const std::vector<LPoint3> before = Deltas(*node);
        const LPoint3 pos = Surface(*node)[3];
        Stroke(*node, {.mode = mode, .pos = pos}, {});
        EXPECT_TRUE(SameBits(Deltas(*node), before));
        EXPECT_FALSE(node->Transform({9, 9, 9}, {1, 1}, {0, 0, 1}));  // no stroke
        EXPECT_TRUE(SameBits(Deltas(*node), before));
        EXPECT_EQ(CheckCaches(*node), "");
    }
}
