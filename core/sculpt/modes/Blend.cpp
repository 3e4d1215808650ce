#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void PrepareDrag(StrokeStep& step, bool, bool force) {
    PrimeDrag(step, 1.1f, force);
}

/// The shape to pull to: without a target the geometry as it is without the delta.
const LPoint3* BlendShape(const StrokeStep& step) {
    LMesh* blend = step.node.lblendCache();
    return blend ? blend->GetVertsPtr() : step.base;
}

bool DragStep(StrokeStep& step) {
    const float amount = RightwardDrag(step);
    if (amount < 0) return false;
    const LPoint3* target = BlendShape(step);
    return ForDragged(step, [&](int v, float w) {
        const LPoint3& p = step.start[v];
        const float t = std::clamp(2 * amount * w, 0.0f, 1.0f);
        return (p - step.base[v]) + (target[v] - p) * t;
    });
}

void PrepareBrush(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// A coat of the blend brush on a vertex: towards the colour that came in or, when the first target
/// has colours, towards the target's, by how bright and how opaque it is there.
LAColor Blended(const StrokeStep& step, const LMorphTarget* target, int v, float a) {
    const LAColor& paint = step.colours->Paints()[v];
    if (!target) return MixedPaint(paint, std::min(0.4f * a, 1.0f), step.colours->IncomAt(v));
    const LAColor color = target->MorphColor(v);
    float share = color.a * 0.1f;
    if (!(share > 0.001f)) return paint;
    share *= (color.r + color.g + color.b) * 0.3333333f;
    return MixedPaint(paint, std::clamp(a * share, 0.0f, 1.0f), LColor(color.r, color.g, color.b));
}

/// Colours are blended, the stencil grows.
void BlendColours(const StrokeStep& step, const LPoint3* positions) {
    const float* stencils = step.colours->Stencils();
    const LMorphTarget* first = step.node.GetMorph(0);
    const LMorphTarget* target = first && first->HasRGBA() ? first : nullptr;
    const LPoint3 centre = step.node.ltrans(1);
    const auto share = [&](int v, float weight) {
        return step.Masked(std::min(weight, 1.0f), positions[v]) * step.colorStrength;
    };
    if (step.affectColor)
        step.ForColors(centre, positions, false, [&](int v, float weight, theThData& record) {
            const float a = share(v, weight);
            if (a > 0) record.SetPaint(v, Blended(step, target, v, a));
        });
    if (step.affectStencil)
        step.ForStencils(centre, positions, false, [&](int v, float weight, theThData& record) {
            const float a = share(v, weight);
            if (a > 0) record.SetStencil(v, MixedStencil(stencils[v], a));
        });
}

bool BrushStep(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.centre = 1, .canSweep = false});
    const LPoint3* positions = node.ldisplayCache()->verts().data();
    if (step.colours) BlendColours(step, positions);
    if (!step.affectGeometry) return false;
    const BrushWeights brush = step.Brush(node.ltrans(1));
    const LPoint3* target = BlendShape(step);
    return step.ForFound(brush, positions, [&](int v, float w, theThData& record) {
        const LPoint3 way = target[v] - step.Position(v);
        if (way.LenSq() >= 1e-7f) record.OffsetVert(v, way * (w * step.pressure));
    });
}

}  // namespace

const BrushMode kBlendMode{"Blend", PrepareDrag, DragStep};
const BrushMode kBlendBrushMode{"Blend Brush", PrepareBrush, BrushStep};

}  // namespace VantrelSDK
