#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "core/io/ObjReader.h"
#include "core/sculpt/BrushMode.h"
#include "tests/Paths.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

// The brushes on vertex colours and stencils.

namespace {

/// The modes that act on colours and stencils.
constexpr int kColourModes[] = {8, 9, 12, 13, 14, 16, 17};

enum Affect { kGeometry = 1, kColor = 2, kStencil = 4 };

void SetAffected(LHeadlessNode& node, int affect) {
    node.settings().affectGeometry = affect & kGeometry;
    node.settings().affectVertColor = affect & kColor;
    node.settings().affectStencil = affect & kStencil;
}

std::vector<LAColor> Paints(const LHeadlessNode& node) {
    const LColorDelta& delta = *node.lcolorDelta();
    return {delta.Paints(), delta.Paints() + delta.GetNumVerts(-2)};
}

std::vector<float> Stencils(const LHeadlessNode& node) {
    const LColorDelta& delta = *node.lcolorDelta();
    return {delta.Stencils(), delta.Stencils() + delta.GetNumVerts(-2)};
}

/// Colours that no brush leaves as they are.
void Speckle(LHeadlessNode& node) {
    LColorDelta& delta = *node.lcolorDelta();
    for (int v = 0; v < delta.GetNumVerts(-1); ++v) {
        const float r = static_cast<float>((v * 7919) % 97) / 97;
        delta.SetDelta(v, LAColor(r * 0.5f, (1 - r) * 0.5f, 0.25f, 0.5f));
        delta.SetStencil(v, 0.25f + 0.5f * r);
    }
    node.setLevelDisplayCache();
    node.ldisplayCache()->CalcAll();
}

/// "" when the display cache shows the colours and stencils as they are.
std::string CheckColours(const LHeadlessNode& node) {
    const LDisplayCache& display = *node.ldisplayCache();
    const LColorDelta& delta = *node.lcolorDelta();
    for (int v = 0; v < display.GetNumVerts(); ++v) {
        if (display.useColors() && !(display.GetColor(v) == delta.GetResColor(v)))
            return "colour of " + std::to_string(v);
        if (display.GetStencil(v) != delta.GetStencil(v)) return "stencil of " + std::to_string(v);
    }
    if (!display.useColors() && !delta.IsZero()) return "no colours";
    return {};
}

}  // namespace

TEST(ColourBrushes, OnePaintStepMixesByTheFalloff) {
    for (const int mode : {8, 9}) {
        const auto node = OpenNode(Boulder(5));
        SetAffected(*node, kColor);
        node->settings().vertexPaintColor = {0.2f, 0.4f, 0.9f};
        node->settings().vertColorStrength.Set(mode, 0.5f);
        if (mode == 9) node->lcolorDelta()->FillDelta({0.2f, 0.4f, 0.9f});
        const std::vector<LPoint3> surface = Surface(*node);
        const Press press{.mode = mode, .pos = surface[9]};
        const LPoint3 to = press.pos + LPoint3(0.01f, 0.02f, 0);
        Stroke(*node, press, {to});
        int touched = 0;
        for (size_t v = 0; v < surface.size(); ++v) {
            const float d = (surface[v] - to).Len();
            const float a = (d <= press.radius ? 1 - d / press.radius : 0) * 0.5f;
            const LColor expected = LColorDelta::cBare * (mode == 8 ? 1 - a : a) +
                                    LColor(0.2f, 0.4f, 0.9f) * (mode == 8 ? a : 1 - a);
            const LColor is = node->lcolorDelta()->GetResColor(static_cast<int>(v));
            ASSERT_NEAR(is.r, expected.r, 1e-5f);
            ASSERT_NEAR(is.b, expected.b, 1e-5f);
            touched += a > 0;
        }
        EXPECT_GT(touched, 50);
        EXPECT_NEAR(node->GetNumTouched(), touched, 2);
        EXPECT_EQ(CheckColours(*node), "");
    }
}

TEST(ColourBrushes, WhatAStrokeActsOn) {
    for (const int mode : kColourModes)
        for (int affect = 0; affect < 8; ++affect) {
            const auto node = OpenNode(Boulder(4), 1, 0);
            Speckle(*node);
            Stroke(*node, {.mode = 8, .pos = Surface(*node)[9]},
                   Path(Surface(*node)[9], {0.02f, 0, 0}, 3));
            SetAffected(*node, affect);
            const auto deltas = Deltas(*node);
            const auto paints = Paints(*node);
            const auto stencils = Stencils(*node);
            const LPoint3 pos = Surface(*node)[9];
            Stroke(*node, {.mode = mode, .pos = pos}, Path(pos, {0.02f, 0.01f, 0}, 4));

            int acts = affect;
            const auto first = [&](std::initializer_list<int> order) {
                for (const int kind : order)
                    if (affect & kind) return kind;
                return 0;
            };
            if (mode == 8 || mode == 9) acts = first({kColor, kStencil, kGeometry});
            if (mode == 12 || mode == 17) acts = first({kGeometry, kColor, kStencil});
            const char* name = FindBrushMode(mode)->name;
            EXPECT_EQ(!SameBits(Deltas(*node), deltas), (acts & kGeometry) != 0)
                << name << " " << affect;
            EXPECT_EQ(Paints(*node) != paints, (acts & kColor) != 0) << name << " " << affect;
            EXPECT_EQ(Stencils(*node) != stencils, (acts & kStencil) != 0) << name << " " << affect;
            EXPECT_EQ(CheckColours(*node), "") << name;
            EXPECT_EQ(CheckCaches(*node), "") << name;
            for (const LAColor& p : Paints(*node))
                for (const float part : {p.r, p.g, p.b, p.a}) ASSERT_TRUE(part >= 0 && part <= 1);
            for (const float s : Stencils(*node)) ASSERT_TRUE(s >= 0 && s <= 1);
            if (acts == 0) continue;
            ASSERT_TRUE(node->UndoStroke());
            EXPECT_TRUE(SameBits(Deltas(*node), deltas));
            EXPECT_EQ(Paints(*node), paints);
            EXPECT_EQ(Stencils(*node), stencils);
            EXPECT_EQ(CheckColours(*node), "") << name;
            EXPECT_EQ(CheckCaches(*node), "") << name;
        }
}

TEST(ColourBrushes, ColoursSmoothAndSharpen) {
    // The spread of the colours under the brush falls, or grows.
    for (const int mode : {12, 13, 16, 17})
        for (const int affect : {kColor, kStencil}) {
            const auto node = OpenNode(Boulder(5));
            Speckle(*node);
            SetAffected(*node, affect);
            for (const int m : {12, 13, 16, 17}) node->settings().vertColorStrength.Set(m, 5);
            const std::vector<LPoint3> surface = Surface(*node);
            const LPoint3 pos = surface[9];
            const auto spread = [&] {
                double sum = 0, squares = 0;
                int count = 0;
                for (int v = 0; v < node->lobject()->GetNumVerts(); ++v) {
                    if ((surface[v] - pos).Len() > 0.2f) continue;
                    const double x = affect == kColor ? node->lcolorDelta()->GetDelta(v).r
                                                      : node->lcolorDelta()->GetStencil(v);
                    sum += x, squares += x * x, ++count;
                }
                return squares / count - sum * sum / count / count;
            };
            const double before = spread();
            Stroke(*node, {.mode = mode, .pos = pos}, Path(pos, {0.01f, 0.01f, 0}, 4));
            if (mode == 13)
                EXPECT_GT(spread(), before * 1.1) << affect;
            else
                EXPECT_LT(spread(), before * 0.9) << mode << " " << affect;
        }
}

TEST(ColourBrushes, TheBlendBrushTakesPaintBack) {
    const auto node = OpenNode(Boulder(4));
    node->lcolorDelta()->FillDelta({1, 0, 0});
    SetAffected(*node, kColor);
    node->settings().vertColorStrength.Set(14, 10);
    const LPoint3 pos = Surface(*node)[9];
    std::vector<LPoint3> moves;
    for (int i = 0; i < 60; ++i) moves.push_back(pos + LPoint3(0.001f * (i % 2 + 1), 0, 0));
    Stroke(*node, {.mode = 14, .pos = pos}, moves);
    EXPECT_NEAR(node->lcolorDelta()->GetResColor(9).g, LColorDelta::cBare.g, 0.01f);
    // Or to the colours of the first target, where it has some.
    SparseColors colours;
    colours.Append(9, LAColor(0, 1, 0, 1));
    node->GetMorph(0)->SetColors(std::move(colours));
    const LAColor aside = Paints(*node)[10];
    for (int i = 0; i < 9; ++i) Stroke(*node, {.mode = 14, .pos = pos}, moves);
    EXPECT_GT(node->lcolorDelta()->GetResColor(9).g, 0.95f);
    EXPECT_LT(node->lcolorDelta()->GetResColor(9).r, 0.1f);
    EXPECT_EQ(Paints(*node)[10], aside);
}

TEST(ColourBrushes, TheStencilProtectsTheSurface) {
    for (const int mode : GeometryModes())
        for (const bool use : {true, false}) {
            const auto node = OpenNode(Boulder(5));
            Stroke(*node, {.mode = 8, .pos = Surface(*node)[9]},
                   Path(Surface(*node)[9], {0.02f, 0, 0}, 3));
            // All of one side, and half of the rest.
            const std::vector<LPoint3> surface = Surface(*node);
            const LPoint3 pos = surface[9];
            for (size_t v = 0; v < surface.size(); ++v)
                node->lcolorDelta()->SetStencil(static_cast<int>(v),
                                                surface[v].x > pos.x ? 1.0f : 0.0f);
            node->settings().useStencil = use;
            Stroke(*node, {.mode = mode, .pos = pos, .radius = 0.6f},
                   Path(pos, {0.03f, 0.01f, 0.02f}, 5));
            int moved = 0, stirred = 0;
            const std::vector<LPoint3> after = Surface(*node);
            for (size_t v = 0; v < surface.size(); ++v) {
                const bool same = (after[v] - surface[v]).Len() < 1e-6f;
                (surface[v].x > pos.x ? stirred : moved) += !same;
            }
            EXPECT_GT(moved, 3) << mode;
            if (use)
                EXPECT_EQ(stirred, 0) << mode;
            else
                EXPECT_GT(stirred, 3) << mode;
        }
}

TEST(ColourBrushes, AnyNumberOfWorkersGivesTheSameBits) {
    const PolyMesh boulder = Boulder(6);  // enough for all workers
    for (unsigned seed = 0; seed < 16; ++seed) {
        std::vector<LAColor> paints;
        std::vector<float> stencils;
        std::vector<LPoint3> deltas;
        for (const int workers : {1, 2, 8}) {
            std::mt19937 random(seed);
            const auto node = OpenNode(boulder, workers);
            Speckle(*node);
            const std::vector<LPoint3> surface = Surface(*node);
            for (int i = 0; i < 4; ++i) {
                LNodeSettings& s = node->settings();
                SetAffected(*node, static_cast<int>(random() % 8));
                s.symmetry = 1 + static_cast<int>(random() % 4);
                s.useStencil = random() % 2;
                const int mode = kColourModes[(seed + 3 * i) % std::size(kColourModes)];
                s.vertColorStrength.Set(mode, random() % 30 / 10.0f);
                const LPoint3 pos = surface[random() % 99];
                Stroke(*node, {.mode = mode, .pos = pos, .radius = 0.9f},
                       Path(pos, {0.05f, 0.02f, 0}, 4));
            }
            ASSERT_EQ(CheckColours(*node), "");
            if (workers == 1) {
                paints = Paints(*node);
                stencils = Stencils(*node);
                deltas = Deltas(*node);
            }
            ASSERT_EQ(Paints(*node), paints);
            ASSERT_EQ(Stencils(*node), stencils);
            ASSERT_TRUE(SameBits(Deltas(*node), deltas));
        }
    }
}

TEST(ColourBrushes, LevelsAndUndoStayInStepWithTheGeometry) {
    const auto node = OpenNode(Boulder(3), 2, 1);
    const LPoint3 pos = Surface(*node)[9];
    const std::vector<LPoint3> path = Path(pos, {0.03f, 0.01f, 0}, 4);
    // Undo takes back stroke by stroke, whatever each was of.
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    const auto deltas = Deltas(*node);
    SetAffected(*node, kColor);
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    const auto paints = Paints(*node);
    EXPECT_GT(node->GetNumTouched(), 10);
    SetAffected(*node, kStencil);
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    EXPECT_FALSE(node->lcolorDelta()->IsZeroStencil());
    EXPECT_TRUE(node->UndoStroke());
    EXPECT_EQ(node->lcolorDelta()->GetStencil(9), 0);
    EXPECT_EQ(Paints(*node), paints);
    EXPECT_TRUE(node->UndoStroke());
    EXPECT_EQ(node->lcolorDelta()->GetAlpha(9), 0);
    EXPECT_TRUE(SameBits(Deltas(*node), deltas));
    EXPECT_TRUE(node->UndoStroke());
    EXPECT_EQ(node->GetMaxDelta(), 0);
    EXPECT_FALSE(node->UndoStroke());

    // A stroke of colour on a lower level shows on the upper one, also on one that is added.
    SetAffected(*node, kColor);
    ASSERT_TRUE(node->SetActiveSubdivLevel(0));
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    ASSERT_TRUE(node->SubdivideAll_Quad());
    EXPECT_EQ(node->lcolorDelta()->GetActiveLevel(), 2);
    EXPECT_EQ(CheckColours(*node), "");
    int painted = 0;
    const int first = node->lcolorDelta()->GetNumVerts(1);
    for (int v = first; v < node->lcolorDelta()->GetNumVerts(2); ++v)
        painted += node->lcolorDelta()->GetAlpha(v) > 0.05f;
    EXPECT_GT(painted, 20);
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    EXPECT_EQ(node->lcolorDelta()->GetNumSubdivLevels(), 2);
    EXPECT_EQ(CheckColours(*node), "");

    node->settings().vertexPaintColor = {0, 0.5f, 1};
    node->FloodVertColor();
    EXPECT_EQ(node->ldisplayCache()->GetColor(5), LColor(0, 0.5f, 1));
    EXPECT_EQ(CheckColours(*node), "");
    node->ClearVertColor();
    EXPECT_EQ(node->ldisplayCache()->GetColor(5), LColorDelta::cBare);
    EXPECT_EQ(CheckColours(*node), "");
}

// Strokes and edits of all paint, in any order and on any level, are taken back one by one.
RC_GTEST_PROP(ColourBrushes, UndoGivesBackWhatWasBeforeEachStrokeAndEdit, ()) {
    const auto node = OpenNode(Boulder(2), 1, 2);
    node->SetActiveSubdivLevel(*rc::gen::inRange(0, 3));
    const LPoint3 pos = Surface(*node)[9];
    struct State {
        std::vector<LAColor> paints;
        std::vector<float> stencils;
        std::vector<LPoint3> deltas;
    };
    const auto now = [&] { return State{Paints(*node), Stencils(*node), Deltas(*node)}; };
    std::vector<State> before;
    // Colours are evaluated from when they are first affected or shown.
    node->ldisplayCache()->SetUseColor(true);
    for (int i = *rc::gen::inRange(1, 10); i > 0; --i) {
        SetAffected(*node, *rc::gen::inRange(1, 8));
        const State was = now();
        if (*rc::gen::arbitrary<bool>()) {
            Stroke(*node, {.mode = *rc::gen::elementOf(std::vector<int>{8, 9, 12, 16}), .pos = pos},
                   Path(pos, {0.03f, 0.01f, 0}, 3));
        } else {
            const auto edit = static_cast<PaintEdit>(*rc::gen::inRange(0, 5));
            const bool edits = node->getAffectVertexColor() || node->getAffectStencil() ||
                               edit == PaintEdit::ColorToStencil ||
                               edit == PaintEdit::StencilToColor;
            RC_ASSERT(node->EditPaint(edit));
            if (!edits) continue;
        }
        before.push_back(was);
        RC_ASSERT(CheckColours(*node) == "");
    }
    while (!before.empty()) {
        node->UndoStroke();
        const State is = now(), &was = before.back();
        RC_ASSERT(is.paints == was.paints);
        RC_ASSERT(is.stencils == was.stencils);
        RC_ASSERT(SameBits(is.deltas, was.deltas));
        RC_ASSERT(CheckColours(*node) == "");
        before.pop_back();
    }
    RC_ASSERT(!node->UndoStroke());
}

TEST(ColourBrushes, WhatForgetsTheStrokesOfTheSurfaceForgetsThoseOfColours) {
    const auto node = OpenNode(Boulder(3));
    const LPoint3 pos = Surface(*node)[9];
    const std::vector<LPoint3> path = Path(pos, {0.03f, 0.01f, 0}, 4);
    SetAffected(*node, kColor);
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    const auto paints = Paints(*node);
    node->SetTime(1, -1);  // another delta: no stroke of it can be taken back
    SetAffected(*node, kGeometry);
    Stroke(*node, {.mode = 8, .pos = pos}, path);
    EXPECT_TRUE(node->UndoStroke());
    EXPECT_EQ(node->GetMaxDelta(), 0);
    EXPECT_FALSE(node->UndoStroke());
    EXPECT_EQ(Paints(*node), paints);
}

TEST(ColourBrushes, AHeadIsPaintedAndWritten) {
    PolyMesh head, result;
    FileError error;
    ASSERT_TRUE(ReadObj(paths::kSource + std::string("/examples/head.obj"), head, error));
    const auto node = OpenNode(head, 2);
    std::string message;
    ASSERT_TRUE(node->GetResult(head, 0, result, message));
    EXPECT_TRUE(result.colours.empty());  // nothing was painted
    SetAffected(*node, kColor);
    const LPoint3 extent = node->loctTree()->GetExtent();
    const LPoint3 pos = Surface(*node)[100];
    Stroke(*node, {.mode = 8, .pos = pos, .radius = extent.Len() / 10},
           Path(pos, {extent.Len() / 100, 0, 0}, 4));
    ASSERT_TRUE(node->GetResult(head, 0, result, message));
    ASSERT_EQ(result.colours.size(), head.positions.size());
    EXPECT_TRUE(SameBits(result.positions, head.positions));
    int white = 0, bare = 0;
    for (const LPoint3& c : result.colours) {
        white += c.y > 0.9f;
        bare += c == LPoint3(0.75f, 0.65f, 0.64f);
    }
    EXPECT_TRUE(node->UndoStroke());
    PolyMesh undone;
    ASSERT_TRUE(node->GetResult(head, 0, undone, message));
    EXPECT_TRUE(undone.colours.empty());
    EXPECT_GT(white, 3);
    EXPECT_GT(bare, static_cast<int>(head.positions.size()) / 2);

    // Colours that came in and weren't painted keep their bits, out of range or not.
    PolyMesh coloured = head;
    coloured.colours.assign(head.positions.size(), {0.1f, 1.5f, 0.3f});
    const auto second = OpenNode(coloured, 1);
    SetAffected(*second, kColor);
    Stroke(*second, {.mode = 8, .pos = pos, .radius = extent.Len() / 10},
           Path(pos, {extent.Len() / 100, 0, 0}, 4));
    ASSERT_TRUE(second->GetResult(coloured, 0, result, message));
    int kept = 0;
    for (const LPoint3& c : result.colours) kept += c == LPoint3(0.1f, 1.5f, 0.3f);
    EXPECT_GT(kept, static_cast<int>(head.positions.size()) / 2);
    EXPECT_LT(kept, static_cast<int>(head.positions.size()));
    ASSERT_TRUE(second->SubdivideAll_Quad());
    ASSERT_TRUE(second->GetResult(coloured, 1, result, message));
    EXPECT_EQ(result.colours.size(), result.positions.size());
    coloured.colours[5].y = NAN;
    EXPECT_FALSE(LHeadlessNode(1).Load(coloured, message));
    EXPECT_EQ(message, "the colour of vertex 5 is not finite");
}
