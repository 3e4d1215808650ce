#include "core/sculpt/PatternColors.h"
#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

/// The normals at the press guide the whole stroke.
void Prepare(StrokeStep& step, bool atPress, bool) {
    if (!atPress) return;
    step.node.lobject()->ClearWeights();
    if (step.affectGeometry) step.node.ldisplayCache()->CachePushPullNormas();
}

/// Lays a coat of the paint colour on what was found, or of the stencil; with sign -1 takes it off.
/// A pattern colours the coat, and what it takes off goes by its brightness.
template <int kSign>
void PaintStep(StrokeStep& step) {
    LNode& node = step.node;
    const float strength = std::min(1.0f, 10 * step.colorStrength);
    const LColor colour = node.GetVertexPaintColor();
    const LAColor* paints = step.colours->Paints();
    const float* stencils = step.colours->Stencils();
    const LPoint3 centre = node.ltrans(2);
    const auto share = [&](int v, float weight) {
        return std::min(step.Masked(weight, step.start[v]), 1.0f) * strength;
    };
    if (!step.affectColor) {
        step.ForStencils(centre, step.start, true, [&](int v, float weight, theThData& record) {
            const float a = share(v, weight);
            if (a > 0)
                record.SetStencil(
                    v, kSign > 0 ? MixedStencil(stencils[v], a) : FadedStencil(stencils[v], a));
        });
        return;
    }
    const PatternColors stamp(node, centre, step.pattern);
    step.ForColors(centre, step.start, true, [&](int v, float weight, theThData& record) {
        float a = share(v, weight);
        const LAColor s = step.pattern ? stamp(step.start[v], v) : LAColor::White;
        if (kSign < 0) a *= step.pattern ? s.Intensivity() : 1;
        if (!(a > 0)) return;
        const LColor coat(colour.r * s.r, colour.g * s.g, colour.b * s.b);
        record.SetPaint(v, kSign > 0 ? MixedPaint(paints[v], a, coat) : FadedPaint(paints[v], a));
    });
}

/// The one normal of a step in push-pull mode 2. A symmetric brush takes it from its direct side.
LPoint3 CommonNormal(const StrokeStep& step) {
    LNode& node = step.node;
    const LDisplayCache& display = *node.ldisplayCache();
    const float radius2 = node.lradius() * node.lradius();
    const LPoint3 centre = node.ltrans(2);
    return Normalized(step.Sum(step.hits.verts, [&](int v) {
        if (step.IsSymmetric() && !((step.start[v] - centre).LenSq() < radius2))
            return LPoint3::Zero;
        return display.GetPushPullVNormal(v);
    }));
}

/// Raises (sign 1) or lowers (sign -1) the surface, or acts on its colours or its stencil instead
/// when those are affected. The weight that a vertex holds is the most that the stroke
/// has given it: without accumulation a brush that passes again adds nothing.
template <int kSign>
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    const bool accumulate = node.getDoAccumulate();
    SearchStep(step, {.sweepsSheet = true, .accumulate = accumulate && !node.firststep()});
    if (step.affectColor || step.affectStencil) {
        PaintStep<kSign>(step);
        return false;
    }
    if (!step.affectGeometry) return false;
    const float strength = step.pressure * node.loctTree()->GetExtent().Len() * 0.5f * kSign;
    const BrushWeights brush = step.Brush(node.ltrans(2));
    const LDisplayCache& display = *node.ldisplayCache();
    const LPoint3 centre = node.ltrans(2), mirror = node.MirrorPosition(centre);
    const LPoint3 common = step.pushPullMode == 2 ? CommonNormal(step) : -node.ldir();
    const LPoint3 mirrorCommon = Mirrored(common, step.axis);

    const auto direction = [&](int v) {
        if (step.pushPullMode == 1) return display.GetPushPullVNormal(v);
        const bool mirrored = step.pushPullMode == 2 && step.IsSymmetric() &&
                              (step.start[v] - mirror).LenSq() <= (step.start[v] - centre).LenSq();
        return mirrored ? mirrorCommon : common;
    };
    return step.ForFound(brush, step.start, [&](int v, float w, theThData& record) {
        if (!(w > 0)) return;
        const float rise = accumulate ? w / 2 : w - record.GetWeight(v);
        if (!(rise > 0)) return;
        record.SetWeight(v, w);
        record.OffsetVert(v, direction(v) * (strength * rise));
    });
}

}  // namespace

const BrushMode kBrushPullMode{"Brush Pull", Prepare, Step<1>};
const BrushMode kBrushPushMode{"Brush Push", Prepare, Step<-1>};

}  // namespace VantrelSDK
