#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

/// Smooths a copy of what the press found; `open` vertices stay when adjacency is given.
void SmoothFound(StrokeStep& step, int iterations, const LAdjVertList* adjVerts,
                 const LAdjFaceList* adjFaces) {
    LSmoothCache& cache = step.node.lsmoothCache();
    for (const int v : step.hits.verts) cache._read()[v] = step.start[v];
    cache.Iterate(iterations, step.hits.faces, step.hits.verts, adjVerts, adjFaces, true);
}

void PrepareSharpen(StrokeStep& step, bool, bool force) {
    PrimeDrag(step, 1.1f, force);
    SmoothFound(step, step.node.getNumSculptSmoothIterations(), nullptr, nullptr);
}

/// The smoothed shape reaches over about the same surface on every level.
void PrepareSmooth(StrokeStep& step, bool, bool force) {
    const LNode& node = step.node;
    PrimeDrag(step, 1.5f, force);
    const int level = node.lobject()->GetOrigGeom()->GetActiveLevel();
    SmoothFound(step, (node.getNumSculptSmoothIterations() + level) * 10,
                node.ldisplayCache()->GetAdjVertList(), node.ldisplayCache()->GetAdjFaceList());
}

/// Moves away from (sign 1) or towards (sign -1) the smoothed shape.
template <int kSign>
bool Step(StrokeStep& step) {
    const float amount = RightwardDrag(step);
    if (amount < 0) return false;
    const LPoint3* smooth = step.node.lsmoothCache().read();
    return ForDragged(step, [&](int v, float w) {
        const LPoint3& p = step.start[v];
        const LPoint3 away = kSign > 0 ? p - smooth[v] : smooth[v] - p;
        return (p - step.base[v]) + away * (amount * w);
    });
}

}  // namespace

const BrushMode kSharpenMode{"Sharpen", PrepareSharpen, Step<1>};
const BrushMode kSmoothMode{"Smooth", PrepareSmooth, Step<-1>};

}  // namespace VantrelSDK
