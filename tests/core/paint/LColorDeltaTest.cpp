#include "core/paint/LColorDelta.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <cstdlib>
#include <random>

#include "core/morph/LMorphTarget.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;

namespace {

rc::Gen<float> Unit() {
    return rc::gen::map(rc::gen::inRange(0, 1001), [](int i) { return i / 1000.0f; });
}

LColor RandomColor() {
    return {*Unit(), *Unit(), *Unit()};
}

float Distance(const LColor& a, const LColor& b) {
    const LColor d = a - b;
    return std::max({std::fabs(d.r), std::fabs(d.g), std::fabs(d.b)});
}

/// Paint, coverage, stencil and incoming colour of all levels, for a comparison of bits.
std::vector<float> State(const LColorDelta& delta) {
    std::vector<float> state;
    const int count = delta.GetNumVerts(-2);
    for (int v = 0; v < count; ++v) {
        const LAColor& paint = delta.Paints()[v];
        const LColor incom = delta.IncomAt(v);
        state.insert(state.end(), {paint.r, paint.g, paint.b, paint.a, delta.Stencils()[v], incom.r,
                                   incom.g, incom.b});
    }
    return state;
}

/// Lays a dab of paint, and of stencil, on what is near a point at the active level.
void Dab(LColorDelta& delta, const LSubdivMesh& geom, const LPoint3& at, float radius,
         const LColor& color) {
    for (int v = 0; v < delta.GetNumVerts(-1); ++v) {
        const float d = (geom.GetVertByAbsIdx(v) - at).Len();
        if (d >= radius) continue;
        delta.DirtyVert(v);
        delta.MixColor(v, 1 - d / radius, color);
        delta.MixStencil(v, 1 - d / radius);
    }
}

}  // namespace

RC_GTEST_PROP(LColorDelta, MixingIsPaintOverPaint, ()) {
    const LColor incom = RandomColor();
    LColorDelta delta(nullptr, 1, 0, incom);
    RC_ASSERT(delta.GetResColor(0) == incom);
    for (int i = 0; i < 6; ++i) {
        const LColor before = delta.GetResColor(0), color = RandomColor();
        const float a = *Unit(), alpha = delta.GetAlpha(0), stencil = delta.GetStencil(0);
        if (*rc::gen::arbitrary<bool>()) {
            delta.MixColor(0, a, color);
            // What is seen goes the share a of the way to the coat's colour.
            RC_ASSERT(Distance(delta.GetResColor(0), before * (1 - a) + color * a) < 1e-5f);
            RC_ASSERT(delta.GetAlpha(0) >= alpha - 1e-6f);
            delta.MixStencil(0, a);
            RC_ASSERT(delta.GetStencil(0) >= stencil - 1e-6f);
        } else {
            delta.DifColor(0, a);
            RC_ASSERT(Distance(delta.GetResColor(0), before * (1 - a) + incom * a) < 1e-5f);
            delta.DifStencil(0, a);
            RC_ASSERT(delta.GetStencil(0) <= stencil);
        }
        RC_ASSERT(delta.GetAlpha(0) >= 0 && delta.GetAlpha(0) <= 1);
        RC_ASSERT(delta.GetStencil(0) >= 0 && delta.GetStencil(0) <= 1);
    }
    RC_ASSERT(delta.GetColor(0) == incom);
    delta.MixColor(0, LAColor(0.25f, 0.5f, 1, 1));
    RC_ASSERT(delta.GetResColor(0) == LColor(0.25f, 0.5f, 1));
    delta.DifColor(0, 1);
    RC_ASSERT(delta.GetResColor(0) == incom);
}

TEST(LColorDelta, WritesAreHeldToTheirRangeAndKnownByTheirFlags) {
    LColorDelta delta(nullptr, 3, 0);
    EXPECT_TRUE(delta.IsZero() && delta.IsZeroStencil());
    delta.SetStencil(1, 0.5f);
    EXPECT_TRUE(delta.IsZero() && !delta.IsZeroStencil());
    delta.OffsetStencil(1, 7);
    EXPECT_EQ(delta.GetStencil(1), 1);
    delta.OffsetStencil(1, -7);
    EXPECT_EQ(delta.GetStencil(1), 0);
    delta.OffsetDelta(1, {0.5f, -1, 2});
    EXPECT_EQ(delta.GetDelta(1), LColor(0.5f, 0, 1));
    EXPECT_FALSE(delta.IsZero());
    delta.OffsetAlpha(1, 3);
    EXPECT_EQ(delta.GetAlpha(1), 1);
    // Outside there is nothing to read or to write.
    for (const int v : {-1, 3, 1 << 30}) {
        const std::vector<float> before = State(delta);
        delta.SetDelta(v, LAColor(1, 1, 1, 1));
        delta.MixColor(v, 1, LColor::cWhite);
        delta.SetStencil(v, 1);
        delta.SetColor(v, LColor::cWhite);
        EXPECT_EQ(State(delta), before);
        EXPECT_EQ(delta.GetResColor(v), LColor::cBlack);
        EXPECT_EQ(delta.GetStencil(v), 0);
    }
    // Whole-object operations.
    delta.SetDelta(0, LAColor(0.25f, 0.5f, 0.75f, 1));
    delta.ClearStencil();
    EXPECT_TRUE(delta.IsZeroStencil());
    delta.ColorToStencil();
    EXPECT_EQ(delta.GetStencil(0), 0.625f);
    EXPECT_EQ(delta.GetStencil(2), 0);
    delta.InvertStencil();
    EXPECT_EQ(delta.GetStencil(2), 1);
    EXPECT_FALSE(delta.IsZeroStencil());
    delta.InvertDelta();
    EXPECT_EQ(delta.GetDelta(0), LColor(0.75f, 0.5f, 0.25f));
    EXPECT_EQ(delta.GetDelta(2), LColor::cBlack);  // unpainted
    delta.StencilToColor();
    EXPECT_EQ(delta.GetResColor(2), LColor::cWhite);
    delta.FillDelta({0.1f, 0.2f, 0.3f});
    delta.ColorToStencil();
    EXPECT_FLOAT_EQ(delta.GetStencil(1), 0.4f);
    delta.ClearDelta();
    EXPECT_TRUE(delta.IsZero());
    EXPECT_EQ(delta.GetDelta(0), LColor::cBlack);
    EXPECT_GT(delta.valid0(), delta.valid1());
    int count = 0;
    float* stencils = delta.GetTopLevelStencilsCopy(count);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(stencils[1], delta.GetStencil(1));
    std::free(stencils);
}

TEST(LColorDelta, ColorsThatComeInAllBlackAreNone) {
    const LSubdivMesh geom = Chain(shapes::Grid(3, 3), "lq");
    LColorDelta delta(nullptr, geom);
    EXPECT_EQ(delta.GetResColor(0), LColorDelta::cBare);
    std::vector<LColor> colors(delta.GetNumVerts(0));
    EXPECT_FALSE(delta.SetIncomingColors(std::span(colors).first(2)));
    EXPECT_TRUE(delta.SetIncomingColors(colors));
    EXPECT_FALSE(delta.HasIncomingColors());
    EXPECT_EQ(delta.GetColor(0), LColorDelta::cBare);
    // One black vertex among others stays black; what is out of range is held to it.
    colors.assign(colors.size(), {2, 0.5f, -1});
    colors[1] = LColor::cBlack;
    EXPECT_TRUE(delta.SetIncomingColors(colors));
    EXPECT_EQ(delta.GetLevelColor(1, 0), LColor::cBlack);
    EXPECT_EQ(delta.GetLevelColor(0, 0), LColor(1, 0.5f, 0));
    int between = 0;
    for (int v = delta.GetNumVerts(0); v < delta.GetNumVerts(-2); ++v)
        between += delta.GetLevelColor(v, 2) != LColor(1, 0.5f, 0);
    EXPECT_GT(between, 3);  // around the black one
    EXPECT_LT(between, delta.GetNumVerts(-2) / 2);
}

RC_GTEST_PROP(LColorDelta, UndoGivesBackTheBitsOfTenStrokes, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const LSubdivMesh geom = Chain(shapes::Sphere(2), "l");
    LColorDelta delta(nullptr, geom);
    delta.SetActiveSubdivLevel(static_cast<int>(random() % 2));
    std::vector<std::vector<float>> states = {State(delta)};
    const int strokes = 1 + static_cast<int>(random() % 13);
    for (int i = 0; i < strokes; ++i) {
        delta.AllockBack();
        const int dabs = static_cast<int>(random() % 3);  // a stroke may touch nothing
        for (int d = 0; d < dabs; ++d)
            Dab(delta, geom, geom.GetVertByAbsIdx(random() % 20), 0.7f,
                {0.2f, random() % 100 / 100.0f, 1});
        RC_ASSERT((delta.CacheUndo(false) > 0) == (State(delta) != states.back()));
        states.push_back(State(delta));
    }
    for (int i = strokes; i > 0 && i > strokes - 10; --i) {
        RC_ASSERT(delta.Undo() == (states[i] != states[i - 1]));
        RC_ASSERT(State(delta) == states[i - 1]);
    }
    RC_ASSERT(delta.GetNumUndos() == 0u);
    RC_ASSERT(!delta.Undo());
}

TEST(LColorDelta, NewLevelsInterpolate) {
    // On levels that aren't smoothed whatever is linear in space stays so.
    const auto linear = [](const LPoint3& p) { return 0.5f + 0.2f * p.x - 0.1f * p.y; };
    for (const std::string kinds : {"l", "q", "lq", "ql", "qq"}) {
        const LSubdivMesh geom = Chain(shapes::Grid(5, 4), kinds);
        LColorDelta delta(nullptr, Chain(shapes::Grid(5, 4), ""));
        LColorDelta own(delta.owner(), delta);
        for (LColorDelta* each : {&delta, &own})
            for (int v = 0; v < each->GetNumVerts(0); ++v) {
                const float value = linear(geom.GetVertByAbsIdx(v));
                each->SetDelta(v, LAColor(value, 0, 1 - value, value));
                each->SetStencil(v, 1 - value);
                each->SetColor(v, {value, value, 0});
            }
        for (const char kind : kinds) {
            ASSERT_TRUE(delta.SubdivideLike(geom));
            ASSERT_TRUE(kind == 'q' ? own.SubdivideAll_Quad() : own.SubdivideAll_Loop());
        }
        EXPECT_FALSE(delta.SubdivideLike(geom));
        ASSERT_EQ(delta.GetNumVerts(-2), geom.GetNumLevelVerts(kinds.size()));
        EXPECT_EQ(delta.GetActiveLevel(), static_cast<int>(kinds.size()));
        EXPECT_EQ(State(own), State(delta)) << kinds;
        for (int v = 0; v < delta.GetNumVerts(-2); ++v) {
            const float value = linear(geom.GetVertByAbsIdx(v));
            ASSERT_NEAR(delta.GetDelta(v).r, value, 1e-5f);
            ASSERT_NEAR(delta.GetAlpha(v), value, 1e-5f);
            ASSERT_NEAR(delta.GetStencil(v), 1 - value, 1e-5f);
            ASSERT_NEAR(delta.GetColor(v).g, value, 1e-5f);
        }
        // And they go as they came.
        std::vector<float> below = State(delta);
        below.resize(8 * delta.GetNumVerts(0));
        while (delta.GetNumSubdivLevels() > 1) ASSERT_TRUE(delta.DeleteTopLevelSubdiv());
        EXPECT_FALSE(delta.DeleteTopLevelSubdiv());
        EXPECT_EQ(State(delta), below);
    }
}

TEST(LColorDelta, WhatWasPaintedBelowComesUpAndDetailsStay) {
    for (const std::string kinds : {"LLLL", "QQQ"}) {
        const LSubdivMesh geom = Chain(shapes::Sphere(2), kinds);
        const int top = static_cast<int>(kinds.size());
        LColorDelta delta(nullptr, geom);
        const LPoint3 here = Normalized(LPoint3(1, 0.2f, 0)), there = -here;
        Dab(delta, geom, there, 0.2f, {0, 1, 0});  // a detail of the top
        const std::vector<float> detail = State(delta);
        // Down and up without painting changes nothing.
        for (const int level : {2, top, 0, 1, top}) ASSERT_TRUE(delta.SetActiveSubdivLevel(level));
        ASSERT_EQ(State(delta), detail);

        ASSERT_TRUE(delta.SetActiveSubdivLevel(1));
        Dab(delta, geom, here, 0.8f, {1, 0, 0});
        ASSERT_TRUE(delta.SetActiveSubdivLevel(top));
        const std::vector<float> up = State(delta);
        float most = 0;
        for (int v = 0; v < delta.GetNumVerts(-1); ++v) {
            const float d = (geom.GetVertByAbsIdx(v) - here).Len();
            if (d < 0.3f) {
                EXPECT_GT(delta.GetDelta(v).r, 0.2f) << d;
                EXPECT_GT(delta.GetStencil(v), 0.2f) << d;
                EXPECT_NEAR(delta.GetDelta(v).r, delta.GetAlpha(v), 1e-5f);
            }
            most = std::max(most, delta.GetAlpha(v));
            ASSERT_TRUE(d < 1.7f || std::equal(&up[8 * v], &up[8 * v + 8], &detail[8 * v]));
        }
        EXPECT_LE(most, 1);
        ASSERT_TRUE(delta.SetActiveSubdivLevel(1));
        ASSERT_TRUE(delta.SetActiveSubdivLevel(top));
        EXPECT_EQ(State(delta), up);
        EXPECT_FALSE(delta.SetActiveSubdivLevel(top + 1));
    }
}

TEST(LColorDelta, UpperLevelsFollowWhileTheActiveOneKeepsItsBitsAndItsUndo) {
    const LSubdivMesh geom = Chain(shapes::Sphere(2), "LQ");
    LColorDelta delta(nullptr, geom);
    EXPECT_TRUE(delta.UpdateUpperLayers());
    ASSERT_TRUE(delta.SetActiveSubdivLevel(1));
    const auto active = [&] {
        const std::vector<float> all = State(delta);
        return std::vector<float>(all.begin(), all.begin() + 8 * delta.GetNumVerts(-1));
    };
    const std::vector<float> clean = active();
    delta.AllockBack();
    Dab(delta, geom, {1, 0, 0}, 0.7f, {1, 0, 0});
    delta.CacheUndo(false);
    const std::vector<float> painted = active(), before = State(delta);
    EXPECT_TRUE(delta.UpdateUpperLayers());
    EXPECT_EQ(active(), painted);
    const std::vector<float> followed = State(delta);
    EXPECT_NE(followed, before);
    // What has followed doesn't come a second time.
    EXPECT_TRUE(delta.UpdateUpperLayers());
    ASSERT_TRUE(delta.SetActiveSubdivLevel(2));
    EXPECT_EQ(State(delta), followed);
    ASSERT_TRUE(delta.SetActiveSubdivLevel(1));

    Dab(delta, geom, {0, 1, 0}, 0.7f, {0, 1, 0});
    delta.CacheUndo(false);
    delta.UpdateUpperLayers();
    ASSERT_TRUE(delta.Undo());
    EXPECT_EQ(active(), painted);
    EXPECT_NE(active(), clean);
}

TEST(LColorDelta, AFrameTakesTheColorsOfTheNeutral) {
    const auto node = strokes::OpenNode(shapes::Sphere(2));
    LColorDelta& delta = *node->lcolorDelta();
    delta.MixColor(3, 1, {1, 0, 0});
    node->SetTime(5, -1);
    EXPECT_EQ(delta.GetResColor(3), LColor(1, 0, 0));  // a neutral without colours leaves paint
    SparseColors colors;
    colors.Append(7, LAColor(0.25f, 0.5f, 0, 0.5f));
    node->GetNeutral()->SetColors(std::move(colors));
    node->SetTime(6, -1);
    EXPECT_EQ(delta.GetAlpha(3), 0);
    EXPECT_EQ(delta.GetDelta(7), LColor(0.25f, 0.5f, 0));
    EXPECT_EQ(delta.GetAlpha(7), 0.5f);
    EXPECT_LE(delta.valid0(), 6);
}
