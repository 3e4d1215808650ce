#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// Moves vertices away from a smoothed copy of what lies under the brush.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.reach = 1.1f, .centre = 1, .canSweep = false});
    if (!step.affectGeometry) return false;
    LSmoothCache& cache = node.lsmoothCache();
    for (const int v : step.hits.verts) cache._read()[v] = step.Position(v);
    cache.Iterate(node.getNumBrushSharpenIterations(), step.hits.faces, step.hits.verts, true);
    const LPoint3* smooth = cache.read();
    const float strength = node.lradius() * step.pressure;
    const BrushWeights brush(node, BrushWeights::Set::kPaint, node.ltrans(1), step.pattern);
    const LPoint3* positions = node.ldisplayCache()->verts().data();
    return step.ForFound(brush, positions, [&](int v, float w, theThData& record) {
        if (w > 0) record.OffsetVert(v, (positions[v] - smooth[v]) * (0.4f * (strength * w)));
    });
}

}  // namespace

const BrushMode kSharpenBrushMode{"Sharpen Brush", Prepare, Step};

}  // namespace VantrelSDK
