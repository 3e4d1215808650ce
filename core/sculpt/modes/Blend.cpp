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

bool BrushStep(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.centre = 1, .canSweep = false});
    if (!step.affectGeometry) return false;
    const BrushWeights brush(node, BrushWeights::Set::kPaint, node.ltrans(1), step.pattern);
    const LPoint3* target = BlendShape(step);
    return step.ForFound(brush, node.ldisplayCache()->verts().data(),
                         [&](int v, float w, theThData& record) {
                             const LPoint3 way = target[v] - step.Position(v);
                             if (way.LenSq() >= 1e-7f)
                                 record.OffsetVert(v, way * (w * step.pressure));
                         });
}

}  // namespace

const BrushMode kBlendMode{"Blend", PrepareDrag, DragStep};
const BrushMode kBlendBrushMode{"Blend Brush", PrepareBrush, BrushStep};

}  // namespace VantrelSDK
