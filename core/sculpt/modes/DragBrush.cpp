#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// The step's segment, longer by a brush radius at both ends.
struct Capsule {
    LPoint3 start, end, axis;
    float len;

    Capsule(const LPoint3& from, const LPoint3& to)
        : start(from), end(to), axis(to - from), len(axis.Len()) {}
    float Distance(const LPoint3& p) const { return (axis ^ (start - p)).Len() / len; }
    bool LiesBetween(const LPoint3& p) const {
        return (p - start) % axis > 0 && (p - end) % -axis > 0;
    }
};

/// Takes the surface along with the stroke.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.centre = 1, .minTurn = false});
    if (!step.affectGeometry || step.hits.verts.empty()) return false;
    const float radius = node.lradius(), strength = 4 * radius * (3 * step.pressure);
    const LPoint3 u = Normalized(node.ltrans(2) - node.ltrans(1)), mirrorU = Mirrored(u, step.axis);
    const LPoint3 from = node.ltrans(1) - u * radius, to = node.ltrans(2) + u * radius;
    const Capsule direct(from, to), mirrored(Mirrored(from, step.axis), Mirrored(to, step.axis));
    const BrushWeights brush = step.Brush(node.ltrans(2));
    return step.ForFound(brush, step.start, [&](int v, float w, theThData& record) {
        const float rise = w - record.GetWeight(v);
        if (!(w > 0) || !(rise > 0)) return;
        record.SetWeight(v, w);
        const LPoint3& p = step.start[v];
        if (!step.IsSymmetric())
            record.OffsetVert(v, u * (rise * strength));
        else if (direct.Distance(p) < radius)
            record.OffsetVert(v, direct.LiesBetween(p) ? u * (rise * strength) : LPoint3::Zero);
        else if (mirrored.Distance(p) < radius && mirrored.LiesBetween(p))
            record.OffsetVert(v, mirrorU * (rise * strength));
    });
}

}  // namespace

const BrushMode kDragMode{"Drag", Prepare, Step};

}  // namespace VantrelSDK
