#pragma once

#include "core/sculpt/StrokeStep.h"

namespace VantrelSDK {

/// The press of a dragging mode: finds what lies within `reach` brush radii, marks it in the
/// display cache and weighs it. Unless `force`, weights that the object has are kept and nothing is
/// found anew. Afterwards node.dragged() holds the weighted vertices, ascending.
void PrimeDrag(StrokeStep& step, float reach, bool force);

/// The frame of a dragging step. newDelta(vertex, weight) gives the delta of a weighted vertex,
/// always from the surface at the press: dragging back restores it.
template <class NewDelta>
bool ForDragged(const StrokeStep& step, const NewDelta& newDelta) {
    return step.ForVerts(step.node.dragged(), [&](int v, int, theThData& record) {
        if (step.Skips(v)) return;
        float weight = record.GetWeight(v);
        if (step.stencil) weight *= 1 - step.stencil[v];
        record.SetVert(v, newDelta(v, weight));
    });
}

/// The shares of the direct and of the mirrored side in the movement of a vertex that both sides of
/// a symmetric drag reach: the two falloffs, as a unit vector.
struct SideShares {
    float direct = 0, mirrored = 0;
};
SideShares SharesOfSides(const StrokeStep& step, const LPoint3& p, const LPoint3& centre,
                         const LPoint3& mirror);

/// How far the pointer is to the right of the press, or -1 when a step has no horizontal motion or
/// is left of it: the modes that pull to a shape act on a drag to the right only.
float RightwardDrag(const StrokeStep& step);

}  // namespace VantrelSDK
