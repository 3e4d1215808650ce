#include <cmath>

#include "core/sculpt/modes/Dragging.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

constexpr float kReach = 1.1f;
constexpr int kNormalRounds = 10;

void Prepare(StrokeStep& step, bool, bool force) {
    PrimeDrag(step, kReach, force);
}

/// The normals of the dragged vertices, in ten rounds each the mean of itself and its neighbours. A
/// round stores each result at once, so that later vertices see it.
const LPoint3* SmoothNormals(StrokeStep& step) {
    LNode& node = step.node;
    const LDisplayCache& display = *node.ldisplayCache();
    const LAdjVertList& adjacency = *display.GetAdjVertList();
    ZeroedArray<LPoint3>& normals = node.vertexNormals();
    for (const int v : node.dragged()) {
        normals[v] = display.GetVNormal(v);
        for (const int n : adjacency.GetAdjVertsForVert(v)) normals[n] = display.GetVNormal(n);
    }
    for (int round = 0; round < kNormalRounds; ++round)
        for (const int v : node.dragged()) {
            LPoint3 sum = normals[v];
            const auto neighbours = adjacency.GetAdjVertsForVert(v);
            for (const int n : neighbours) sum += normals[n];
            normals[v] = sum / static_cast<float>(neighbours.size() + 1);
        }
    return normals.data();
}

/// Moves along the smoothed normals by the length of the drag.
bool Step(StrokeStep& step) {
    const LPoint3* normals = SmoothNormals(step);
    const float amount = 0.3f * std::fabs(step.Drag() % step.node.lorth());
    return ForDragged(step, [&](int v, float w) {
        return step.start[v] + normals[v] * (amount * w) - step.base[v];
    });
}

}  // namespace

const BrushMode kInflateMode{"Inflate", Prepare, Step};

}  // namespace VantrelSDK
