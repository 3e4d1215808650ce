#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep&, bool, bool) {}

/// Takes vertices back to where they were when the session began.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.sweepsSheet = true, .accumulate = !node.firststep()});
    if (!step.affectGeometry) return false;
    const float strength =
        step.pressure * std::min(0.05f * node.loctTree()->GetExtent().Len(), 0.2f * node.lradius());
    const LSubdivMesh* entry = node.lentryCache();
    const LPoint3* goals = entry ? entry->GetAllVertsPtr() : nullptr;
    const BrushWeights brush = step.Brush(node.ltrans(2));
    return step.ForFound(brush, step.start, [&](int v, float w, theThData& record) {
        if (!(w > 0)) return;
        const LPoint3 goal = goals ? goals[v] : LPoint3::Zero;
        LPoint3 way = goal - step.delta[v];
        const float len = way.Len(), reach = strength * w;
        if (way.LenSq() < 1e-5f)
            record.SetVert(v, goal);
        else
            record.OffsetVert(v, reach <= len ? way * (reach / len) : way);
    });
}

}  // namespace

const BrushMode kEraseMode{"Erase", Prepare, Step};

}  // namespace VantrelSDK
