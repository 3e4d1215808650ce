#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "core/paint/PaintMix.h"
#include "core/sculpt/BrushMode.h"
#include "tests/core/paint/PlainPatterns.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

// Strokes with a pattern, against what each vertex should come to by itself.

namespace {

/// Every pixel another colour and another coverage, so that no turn or flip hides.
std::array<int, 4> Motley(int x, int y) {
    return {(x * 37 + y * 11) % 256, (x * 5 + y * 71) % 256, (x * y) % 256, 255 - (x + y) % 128};
}

/// A patch in the plane z = 0 with a UV point of its own for each corner of each polygon; a point's
/// place tells that of its vertex.
PolyMesh Sheet() {
    PolyMesh mesh = shapes::Grid(40, 40, false, 2);
    for (LPoint3& p : mesh.positions) p.z = 0;
    mesh.uvs.clear();
    mesh.cornerUVs.clear();
    for (const int v : mesh.cornerVerts) {
        mesh.cornerUVs.push_back(static_cast<int>(mesh.uvs.size()));
        mesh.uvs.push_back({mesh.positions[v].x * 0.4f + 0.5f, mesh.positions[v].y * 0.3f + 0.45f});
    }
    return mesh;
}

LPoint2 UVOf(const LPoint3& p) {
    return {p.x * 0.4f + 0.5f, p.y * 0.3f + 0.45f};
}

float Linear(const LPoint3& p, const LPoint3& c, float radius) {
    const float d = (p - c).Len();
    return d <= radius ? 1 - d / radius : 0;
}

/// One step of a stroke straight at the sheet, along (0.6, 0.8).
const LPoint3 kFrom(0.1f, -0.05f, 0), kAlong(0.6f, 0.8f, 0), kTo = kFrom + kAlong * 0.05f;
Press StraightPress(int mode) {
    return {.mode = mode, .pos = kFrom, .radius = 0.5f};
}

/// Where p lies in the frame that the step turns along itself: u across it, v along it.
LPoint2 InFrame(const LPoint3& p, const LPoint3& centre, float radius) {
    const LPoint3 d = p - centre;
    const LPoint3 across = LPoint3(0, 0, 1) ^ kAlong;
    return {d % across / radius, d % kAlong / radius};
}

void Affect(LHeadlessNode& node, bool color, bool stencil) {
    node.settings().affectGeometry = !color && !stencil;
    node.settings().affectVertColor = color;
    node.settings().affectStencil = stencil;
}

}  // namespace

TEST(PatternStrokes, AStampRaisesWhatItCoversAlongTheStroke) {
    const auto node = OpenNode(Sheet());
    const LPattern& pattern = GivePattern(*node, 60, 60, Motley);
    node->settings().pushPullMode = 0;
    const std::vector<LPoint3> before = Surface(*node);
    const float strength = 0.1f * node->loctTree()->GetExtent().Len() * 0.5f;
    Stroke(*node, StraightPress(8), {kTo}, false);
    const std::vector<LPoint3> after = Surface(*node);
    int raised = 0;
    for (size_t v = 0; v < before.size(); ++v) {
        const LPoint2 uv = InFrame(before[v], kTo, 0.5f);
        // At the edge of a sample rounding decides which it is.
        const float x = 29.5f * (1 + uv.x), y = 29.5f * (1 + uv.y);
        if (std::abs(x - std::round(x)) < 1e-3f || std::abs(y - std::round(y)) < 1e-3f) continue;
        // The falloff by itself has tests of its own.
        const float expected =
            strength * node->calcWeight2tex(before[v], kTo) * pattern.GetWeight(uv.x, uv.y);
        const float rise = after[v].z;
        ASSERT_NEAR(rise, expected, 1e-6f) << v;
        raised += rise > 0;
    }
    EXPECT_GT(raised, 200);
}

TEST(PatternStrokes, APatternByUVsStaysWhereItLies) {
    for (const int symmetry : {4, 1}) {
        const auto node = OpenNode(Sheet());
        const LPattern& pattern = GivePattern(*node, 300, 200, Motley);
        node->settings().patternMode = 2;
        node->settings().pushPullMode = 0;
        node->settings().symmetry = symmetry;
        const std::vector<LPoint3> before = Surface(*node);
        const float strength = 0.1f * node->loctTree()->GetExtent().Len() * 0.5f;
        Stroke(*node, StraightPress(8), {kTo}, false);
        const std::vector<LPoint3> after = Surface(*node);
        for (size_t v = 0; v < before.size(); ++v) {
            const LPoint3& p = before[v];
            const LPoint2 uv = UVOf(p);
            const float expected =
                strength * node->calcWeight2tex(p, kTo) * pattern.GetProjWeight(uv.x, uv.y);
            ASSERT_NEAR(after[v].z, expected, 1e-6f) << v;
        }
        // A channel that there isn't leaves it under the brush.
        node->settings().patternUVchannel = 3;
        EXPECT_EQ(node->GetStrokePattern().lie, StrokePattern::Lie::kBrush);
        EXPECT_EQ(node->calcWeightUV2(before[820], before[820], 0), 1);
    }
}

TEST(PatternStrokes, DraggingWeighsByThePattern) {
    for (const int mode : {0, 2}) {
        const auto node = OpenNode(Sheet());
        const LPattern& pattern = GivePattern(*node, 300, 200, Motley);
        node->settings().patternMode = mode;
        const std::vector<LPoint3> before = Surface(*node);
        Press press = StraightPress(0);
        Stroke(*node, press, {press.pos + LPoint3(0, 0, 0.2f)});
        int moved = 0;
        for (size_t v = 0; v < before.size(); ++v) {
            const LPoint3 &p = before[v], d = p - press.pos;
            // Before it moves, a brush lies as the screen does: v is down.
            const LPoint2 uv = mode == 2 ? UVOf(p) : LPoint2(d.x / 0.5f, -d.y / 0.5f);
            const float x = 29.5f * (1 + uv.x), y = 29.5f * (1 + uv.y);
            if (std::abs(x - std::round(x)) < 1e-3f || std::abs(y - std::round(y)) < 1e-3f)
                continue;
            const float weight =
                Linear(p, press.pos, 0.5f) *
                (mode == 2 ? pattern.GetProjWeight(uv.x, uv.y) : pattern.GetWeight(uv.x, uv.y));
            ASSERT_NEAR(Surface(*node)[v].z, 0.2f * weight, 0.006f) << v;
            moved += weight > 0;
        }
        EXPECT_GT(moved, 200);
    }
}

TEST(PatternStrokes, ColoursComeFromThePatternAndCoverByItsAlpha) {
    for (const int mode : {0, 2})
        for (const int brush : {8, 9}) {
            const auto node = OpenNode(Sheet());
            const LPattern& pattern = GivePattern(*node, 60, 60, Motley);
            Affect(*node, true, false);
            node->settings().patternMode = mode;
            node->settings().vertexPaintColor = {0.5f, 1, 0.25f};
            node->settings().vertColorStrength.Set(brush, 0.7f);
            if (brush == 9) node->lcolorDelta()->FillDelta({0.9f, 0.3f, 0.1f});
            const std::vector<LPoint3> surface = Surface(*node);
            Stroke(*node, StraightPress(brush), {kTo}, false);
            int painted = 0;
            for (size_t v = 0; v < surface.size(); ++v) {
                const LPoint2 uv = mode == 2 ? UVOf(surface[v]) : InFrame(surface[v], kTo, 0.5f);
                const float x = 29.5f * (1 + uv.x), y = 29.5f * (1 + uv.y);
                if (std::abs(x - std::round(x)) < 1e-3f || std::abs(y - std::round(y)) < 1e-3f)
                    continue;
                const LAColor stamp =
                    mode == 2 ? pattern.GetProjColor(uv.x, uv.y) : pattern.GetColor(uv.x, uv.y);
                const float a = node->calcWeight2tex(surface[v], kTo) * stamp.a * 0.7f;
                const LAColor was = brush == 9 ? LAColor(0.9f, 0.3f, 0.1f, 1) : LAColor();
                const LAColor expected =
                    brush == 8 ? MixedPaint(was, a, {0.5f * stamp.r, stamp.g, 0.25f * stamp.b})
                               : FadedPaint(was, a * stamp.Intensivity());
                const LAColor is = node->lcolorDelta()->Paints()[v];
                ASSERT_NEAR(is.r, expected.r, 1e-5f) << v << " " << mode << " " << brush;
                ASSERT_NEAR(is.g, expected.g, 1e-5f);
                ASSERT_NEAR(is.a, expected.a, 1e-5f);
                painted += a > 0;
            }
            EXPECT_GT(painted, 200);
        }
}

TEST(PatternStrokes, StencilsTakeThePatternsWeight) {
    const auto node = OpenNode(Sheet());
    const LPattern& pattern = GivePattern(*node, 60, 60, Motley);
    Affect(*node, false, true);
    const std::vector<LPoint3> surface = Surface(*node);
    Stroke(*node, StraightPress(8), {kTo}, false);
    for (size_t v = 0; v < surface.size(); ++v) {
        const LPoint2 uv = InFrame(surface[v], kTo, 0.5f);
        const float x = 29.5f * (1 + uv.x), y = 29.5f * (1 + uv.y);
        if (std::abs(x - std::round(x)) < 1e-3f || std::abs(y - std::round(y)) < 1e-3f) continue;
        ASSERT_NEAR(node->lcolorDelta()->Stencils()[v],
                    node->calcWeight2tex(surface[v], kTo) * pattern.GetWeight(uv.x, uv.y), 1e-5f);
    }
}

TEST(PatternStrokes, ASymmetricStampIsItsOwnMirrorImage) {
    const auto node = OpenNode(Sheet());
    GivePattern(*node, 60, 60, Motley);
    Affect(*node, true, false);
    node->settings().symmetry = 1;
    Press press{.mode = 8, .pos = {0.45f, 0.1f, 0}, .radius = 0.3f};
    Stroke(*node, press, {press.pos + kAlong * 0.05f}, false);
    const LPoint3 c = node->ltrans(2);
    for (float x = -0.29f; x < 0.3f; x += 0.037f)
        for (float y = -0.29f; y < 0.3f; y += 0.037f) {
            const LPoint3 p = c + LPoint3(x, y, 0), q(-p.x, p.y, p.z);
            const LAColor one = node->getPatternColor(p, c), other = node->getPatternColor(q, c);
            EXPECT_NEAR(one.r, other.r, 1e-6f);
            EXPECT_NEAR(one.b, other.b, 1e-6f);
            EXPECT_NEAR(node->calcWeight3(p, c), node->calcWeight3(q, c), 1e-4f);
        }
    EXPECT_EQ(node->getPatternColor(c + LPoint3(0.31f, 0, 0), c), LAColor::Black);
    node->lpatterns()->SetAciveIndex(-1);
    EXPECT_EQ(node->getPatternColor(c, c), LAColor::Black);
}

TEST(PatternStrokes, APatternInTheViewShapesNothingYet) {
    const auto node = OpenNode(Sheet()), plain = OpenNode(Sheet());
    GivePattern(*node, 60, 60, Motley);
    node->settings().patternMode = 1;
    for (LHeadlessNode* each : {node.get(), plain.get()})
        Stroke(*each, StraightPress(8), Path(kFrom, kAlong * 0.1f, 4));
    EXPECT_TRUE(SameBits(Deltas(*node), Deltas(*plain))) << "and is swept as without one";
}

TEST(PatternStrokes, AStampIsLaidOnlyWhereOneIsDue) {
    const auto node = OpenNode(Sheet());
    GivePattern(*node, 4, 4, [](int, int) { return std::array{255, 255, 255, 255}; });
    node->settings().useChainPatterns = true;
    std::vector<LPoint3> moves;
    for (int i = 1; i <= 30; ++i) moves.push_back({-0.8f + 0.05f * i, 0, 0});
    Stroke(*node, {.mode = 8, .pos = {-0.8f, 0, 0}, .radius = 0.15f}, moves);
    // Each 0.3 apart from the last, and none in between: the row of vertices along the stroke.
    int hills = 0;
    float last = 0;
    bool rising = false;
    std::vector<std::pair<float, float>> row;
    for (const LPoint3& p : Surface(*node))
        if (std::abs(p.y) < 0.03f) row.emplace_back(p.x, p.z);
    std::sort(row.begin(), row.end());
    for (const auto& [x, z] : row) {
        if (rising && z < last - 1e-4f) ++hills, rising = false;
        if (z > last + 1e-4f) rising = true;
        last = z;
    }
    EXPECT_EQ(hills, 4) << "the first step lays none, then one each two radii";
}
