#include "core/math/Geometry.h"
#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool, bool force) {
    PrimeDrag(step, 1, force);
}

LPoint3 Rotated(const LPoint3& p, const LPoint3& centre, const LPoint3& axis, float angle) {
    LPoint3 v = p - centre;
    RotateAroundVector(axis, angle, v);
    return v + centre;
}

/// Rotates about the view direction through the press: half a turn for a drag of one radius.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    const float angle = (step.Drag() % node.lorth()) * 3.1415927f / node.lradius();
    const LPoint3 centre = node.ltrans(0), axis = node.ldir();
    if (!step.IsSymmetric())
        return ForDragged(step, [&](int v, float w) {
            return Rotated(step.start[v], centre, axis, angle * w) - step.base[v];
        });
    const LPoint3 mirror = node.MirrorPosition(centre), mirrorAxis = Mirrored(axis, step.axis);
    return ForDragged(step, [&](int v, float w) {
        const LPoint3& p = step.start[v];
        const SideShares shares = SharesOfSides(step, p, centre, mirror);
        const LPoint3 direct = Rotated(p, centre, axis, w * shares.direct * angle);
        const LPoint3 mirrored = Rotated(p, mirror, mirrorAxis, -w * shares.mirrored * angle);
        return (direct + mirrored) / 2 - step.base[v];
    });
}

}  // namespace

const BrushMode kRotateMode{"Rotate", Prepare, Step};

}  // namespace VantrelSDK
