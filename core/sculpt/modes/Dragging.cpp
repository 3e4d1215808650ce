#include "core/sculpt/modes/Dragging.h"

#include <cmath>

namespace VantrelSDK {

void PrimeDrag(StrokeStep& step, float reach, bool force) {
    LNode& node = step.node;
    LMeshObject& object = *node.lobject();
    if (force || !object.HasVertsWeights()) {
        const LPoint3& centre = node.ltrans(0);
        step.hits.Clear();
        node.findFaces(LOctTree::Sphere{centre, node.lradius() * reach}, step.hits);
        MarkFound(step);
        const BrushWeights brush(node, BrushWeights::Set::kSculpt, centre, step.pattern);
        step.ForVerts(step.hits.verts, [&](int v, int, theThData& record) {
            const LPoint3& p = step.start[v];
            float weight = brush(p, v);
            if (step.mask && weight > 0) weight *= step.mask->GetWeight(&node, p);
            record.SetWeight(v, std::clamp(weight, 0.0f, 1.0f));
        });
    }
    node.dragged().assign(object.Weighted().begin(), object.Weighted().end());
    std::sort(node.dragged().begin(), node.dragged().end());
}

SideShares SharesOfSides(const StrokeStep& step, const LPoint3& p, const LPoint3& centre,
                         const LPoint3& mirror) {
    const LFalloffCache* curve = step.node.lfalloff1();
    const float radius = step.node.lradius();
    const float direct = curve ? curve->Value((p - centre).Len(), radius) : 0;
    const float mirrored = curve ? curve->Value((p - mirror).Len(), radius) : 0;
    const float len = std::sqrt(direct * direct + mirrored * mirrored);
    if (!(len > 0)) return {};
    return {direct / len, mirrored / len};
}

float RightwardDrag(const StrokeStep& step) {
    const LNode& node = step.node;
    if (node.lscreen(1).x == node.lscreen(2).x) return -1;
    return node.lscreen(2).x - node.lscreen(0).x;
}

}  // namespace VantrelSDK
