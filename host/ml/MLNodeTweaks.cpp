#include <maya/MFnDependencyNode.h>

#include "host/commands/GeometryLine.h"
#include "host/ml/MLMesh.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"

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
    const std::vector<LPoint3> plain = ReadPositions(inputPlug().asMObject());
    const size_t count = static_cast<size_t>(meshObject()->GetOrigGeom()->GetNumLevelVerts(0));
    if (tweaked.size() != count || plain.size() != count) return false;
    bool changed = false;
    if (!IsSculpting() && !meshObject()->Update(changed, inputPlug().asMObject(), -1)) return false;
    std::vector<LPoint3> offsets(count);
    for (size_t v = 0; v < count; ++v) offsets[v] = tweaked[v] - plain[v];
    RaiseLevels();
    return tweakJustCleared = AddToLevel0(offsets);
}

}  // namespace VantrelSDK
