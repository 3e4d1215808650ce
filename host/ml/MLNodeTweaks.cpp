#include <maya/MFnDependencyNode.h>

#include "host/ml/MLMesh.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/nodes/GeometryLine.h"

namespace VantrelSDK {

namespace {

/// Calls visit(vertex plug) for the moved vertices of the tweak nodes that feed a plug, until it
/// returns false.
template <class Visit>
void ForEachTweak(const MPlug& input, const Visit& visit) {
    if (input.isNull() || !input.isConnected()) return;
    for (const MPlug& output : GeometryAbove(input)) {
        if (!output.node().hasFn(MFn::kTweak)) continue;
        const MPlug list = MFnDependencyNode(output.node()).findPlug("vlist");
        for (unsigned i = 0; i < list.numElements(); ++i) {
            const MPlug vertices = list[i].child(0);
            for (unsigned k = 0; k < vertices.numElements(); ++k)
                if (!visit(vertices[k])) return;
        }
    }
}

bool IsMoved(const MPlug& vertex) {
    for (unsigned c = 0; c < 3; ++c)
        if (vertex.child(c).asFloat() != 0) return true;
    return false;
}

}  // namespace

bool MLNode::hasTweaks() const {
    bool moved = false;
    if (!GetDelta()) return false;
    ForEachTweak(inputPlug(), [&](const MPlug& vertex) {
        moved = IsMoved(vertex);
        return !moved;
    });
    return moved;
}

bool MLNode::mergeTweaks() {
    if (!hasTweaks() || !meshObject() || IsStroking()) return false;
    const std::vector<LPoint3> tweaked = ReadPositions(inputPlug().asMObject());
    ForEachTweak(inputPlug(), [](const MPlug& vertex) {
        for (unsigned c = 0; c < 3; ++c) vertex.child(c).setValue(0.0f);
        return true;
    });
    const MObject mesh = inputPlug().asMObject();
    const std::vector<LPoint3> plain = ReadPositions(mesh);
    bool changed = false;
    if (tweaked.size() != plain.size() || !meshObject()->Update(changed, mesh, -1)) return false;
    std::vector<LPoint3> offsets(plain.size());
    for (size_t v = 0; v < plain.size(); ++v) offsets[v] = tweaked[v] - plain[v];
    return AddToLevel0(offsets);
}

}  // namespace VantrelSDK
