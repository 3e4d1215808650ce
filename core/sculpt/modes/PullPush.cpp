#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

/// The direction is fixed at the press: the weighted mean of the normals.
void Prepare(StrokeStep& step, bool, bool force) {
    LNode& node = step.node;
    PrimeDrag(step, 1, force);
    node._pullPushDir() = Normalized(step.Sum(node.dragged(), [&](int v) {
        return node.ldisplayCache()->GetVNormal(v) * node.lobject()->GetWeight(v);
    }));
}

bool Pull(const StrokeStep& step, float amount) {
    const LPoint3 direction = step.node.pullPushDir();
    return ForDragged(step, [&](int v, float w) {
        return step.start[v] + direction * (amount * w) - step.base[v];
    });
}

}  // namespace

const BrushMode kPullMode{
    "Pull", Prepare, [](StrokeStep& step) { return Pull(step, step.Drag() % step.node.lorth()); }};
const BrushMode kPushMode{"Push", Prepare, [](StrokeStep& step) {
                              return Pull(step, -(step.Drag() % step.node.lorth()));
                          }};

}  // namespace VantrelSDK
