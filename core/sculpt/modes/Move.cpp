#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool, bool force) {
    PrimeDrag(step, 1, force);
}

/// Moves along the drag; the mirrored side along the mirrored drag, and where both sides reach
/// along a mix of the two.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    const LPoint3 drag = step.Drag();
    if (!step.IsSymmetric())
        return ForDragged(step,
                          [&](int v, float w) { return step.start[v] + drag * w - step.base[v]; });
    const LPoint3 mirrorDrag = Mirrored(drag, step.axis);
    const LPoint3 centre = node.ltrans(0), mirror = node.MirrorPosition(centre);
    const float radius2 = node.lradius() * node.lradius();
    return ForDragged(step, [&](int v, float w) {
        const LPoint3& p = step.start[v];
        const bool direct = (p - centre).LenSq() < radius2,
                   mirrored = (p - mirror).LenSq() < radius2;
        LPoint3 move = direct ? drag : mirrorDrag;
        if (direct == mirrored) {
            const SideShares shares = SharesOfSides(step, p, centre, mirror);
            move = drag * shares.direct + mirrorDrag * shares.mirrored;
        }
        return p + move * w - step.base[v];
    });
}

}  // namespace

const BrushMode kMoveMode{"Move", Prepare, Step};

}  // namespace VantrelSDK
