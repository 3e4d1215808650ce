#include <cmath>

#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

constexpr float kReach = 1.1f;
constexpr int kNormalRounds = 10;

void Prepare(StrokeStep& step, bool, bool force) {
    LNode& node = step.node;
    PrimeDrag(step, kReach, force);
    // Without memory nothing is dragged.
    if (!node.normalSmoother().Bind(node.dragged(), *node.ldisplayCache()->GetAdjVertList()))
        node.dragged().clear();
}

/// Moves along the smoothed normals by the length of the drag.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    LPoint3* normals = node.vertexNormals().data();
    node.normalSmoother().Smooth(node.ldisplayCache()->vnormals(), kNormalRounds, normals);
    const float amount = 0.3f * std::fabs(step.Drag() % node.lorth());
    return ForDragged(step, [&](int v, float w) {
        return step.start[v] + normals[v] * (amount * w) - step.base[v];
    });
}

}  // namespace

const BrushMode kInflateMode{"Inflate", Prepare, Step};

}  // namespace VantrelSDK
