#include "core/sculpt/StrokeStep.h"

namespace VantrelSDK {

namespace {

/// The cosine below which the last two segments make a sharp turn.
constexpr float kSharpTurn = 0.1f;

/// The cosine between the last two segments; 0 when one of them has no length.
float TurnCosine(const LNode& node) {
    const LPoint3 before = node.ltrans(1) - node.ltrans(3), now = node.ltrans(2) - node.ltrans(1);
    if (before == LPoint3::Zero || now == LPoint3::Zero) return 0;
    return Normalized(before) % (now / now.Len());
}

}  // namespace

bool CanSweep(const StrokeStep& step, bool minTurn, bool sweepsSheet) {
    const LNode& node = step.node;
    if (LNode::prefNumInterpolationSteps < 2) return false;
    if (step.pattern && !(sweepsSheet && step.pattern.lie == StrokePattern::Lie::kSheet))
        return false;
    if (!((node.ltrans(2) - node.ltrans(1)).Len() > 0)) return false;
    return !minTurn || TurnCosine(node) > kSharpTurn;
}

void SearchStep(StrokeStep& step, const StrokeSearch& search) {
    LNode& node = step.node;
    const float radius = node.lradius(), reach = radius * search.reach;
    step.hits.Clear();
    step.swept = search.canSweep && CanSweep(step, search.minTurn, search.sweepsSheet);
    if (step.swept) {
        const LPoint3 p0 = node.ltrans(1), p1 = node.ltrans(2);
        LOctTree::Sweep sweep;
        sweep.p0 = p0;
        sweep.p1 = p1;
        sweep.prev = node.ltrans(3);
        sweep.radius = radius;
        sweep.accumulate = search.accumulate;
        sweep.falloff = node.useSoftFalloff2() ? node.PaintCurve() : nullptr;
        node.findFaces(sweep, step.hits);
    } else {
        node.findFaces(LOctTree::Sphere{node.ltrans(search.centre), reach}, step.hits);
    }
    MarkFound(step);
}

void MarkFound(StrokeStep& step) {
    LDisplayCache& display = *step.node.ldisplayCache();
    display.Clear(false);
    const std::span<const int> verts(step.hits.verts);
    // A hidden face is not found, but turns with its corners all the same.
    if (step.node.lobject()->HasHidden()) return display.SetVertsMoved(verts);
    display.SetChanged(step.hits.faces, verts, step.hits.border);
    // Of a vertex outside the searched ball not all faces were found, but a brush whose weights
    // have another centre may move it.
    display.SetVertsMoved(verts.subspan(step.hits.numInside));
}

}  // namespace VantrelSDK
