#include "host/nodes/GeometryLine.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MPlugArray.h>
#include <maya/MTypeId.h>

#include <algorithm>

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

MPlug Find(const MObject& node, const char* name) {
    return MFnDependencyNode(node).findPlug(name);
}

bool IsNamed(const MPlug& plug, const char* name) {
    return plug == MFnDependencyNode(plug.node()).attribute(name);
}

/// Nodes with one way through.
const char* SingleInput(const MObject& node) {
    if (node.hasFn(MFn::kMesh)) return "inMesh";
    if (node.hasFn(MFn::kGroupParts)) return "inputGeometry";
    return MFnDependencyNode(node).typeId() == MTypeId(kKelmoNode2Id) ? "inputGeom" : nullptr;
}

std::vector<MPlug> SingleOutputs(const MObject& node) {
    if (node.hasFn(MFn::kMesh)) return {Find(node, "outMesh"), Find(node, "worldMesh")};
    if (node.hasFn(MFn::kGroupParts)) return {Find(node, "outputGeometry")};
    return {Find(node, "outputGeom"), Find(node, "outputProxy")};
}

MPlug FirstElement(const MPlug& array) {
    return array.numElements() > 0 ? array.elementByPhysicalIndex(0) : MPlug();
}

void AppendFed(const MPlug& output, std::vector<MPlug>& inputs) {
    if (output.isNull()) return;
    if (output.isArray()) {
        for (unsigned i = 0; i < output.numElements(); ++i) AppendFed(output[i], inputs);
        return;
    }
    MPlugArray fed;
    output.connectedTo(fed, false, true);
    inputs.insert(inputs.end(), fed.begin(), fed.end());
}

void AppendBelow(const MPlug& output, std::vector<MPlug>& all) {
    std::vector<MPlug> inputs;
    AppendFed(output, inputs);
    for (const MPlug& input : inputs) {
        if (std::ranges::count(all, input)) continue;
        all.push_back(input);
        for (const MPlug& next : GeometryOutputs(input)) AppendBelow(next, all);
    }
}

}  // namespace

MPlug GeometryInput(const MPlug& output) {
    const MObject node = output.node();
    if (const char* name = SingleInput(node)) return Find(node, name);
    if (!node.hasFn(MFn::kGeometryFilt) || !output.isElement()) return MPlug();
    return Find(node, "input").elementByLogicalIndex(output.logicalIndex()).child(0);
}

std::vector<MPlug> GeometryOutputs(const MPlug& input) {
    const MObject node = input.node();
    if (const char* name = SingleInput(node))
        return IsNamed(input, name) ? SingleOutputs(node) : std::vector<MPlug>();
    if (!node.hasFn(MFn::kGeometryFilt) || !IsNamed(input, "inputGeometry")) return {};
    return {Find(node, "outputGeometry").elementByLogicalIndex(input.parent().logicalIndex())};
}

MPlug MainGeometryInput(const MObject& node) {
    if (const char* name = SingleInput(node)) return Find(node, name);
    if (!node.hasFn(MFn::kGeometryFilt)) return MPlug();
    const MPlug first = FirstElement(Find(node, "input"));
    return first.isNull() ? first : first.child(0);
}

MPlug MainGeometryOutput(const MObject& node) {
    if (SingleInput(node)) return SingleOutputs(node)[0];
    return node.hasFn(MFn::kGeometryFilt) ? FirstElement(Find(node, "outputGeometry")) : MPlug();
}

std::vector<MPlug> GeometryAbove(const MPlug& input) {
    std::vector<MPlug> outputs;
    MPlug at = input;
    while (!at.isNull()) {
        const MPlug output = at.source();
        if (output.isNull() || std::ranges::count(outputs, output)) break;
        outputs.push_back(output);
        at = GeometryInput(output);
    }
    return outputs;
}

std::vector<MPlug> GeometryBelow(const MPlug& output) {
    std::vector<MPlug> inputs;
    AppendBelow(output, inputs);
    return inputs;
}

}  // namespace VantrelSDK
