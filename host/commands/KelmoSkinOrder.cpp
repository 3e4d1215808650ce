#include "host/commands/KelmoSkinOrder.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MPlugArray.h>

#include "host/commands/KelmoNewCmd.h"
#include "host/nodes/Finders.h"
#include "host/nodes/GeometryLine.h"

namespace VantrelSDK {

namespace {

MPlug Find(const MObject& node, const char* name) {
    return MFnDependencyNode(node).findPlug(name);
}

MStatus Cut(const MPlug& destination, MDGModifier& edits) {
    const MPlug source = destination.source();
    return source.isNull() ? MStatus() : edits.disconnect(source, destination);
}

/// What feeds the node feeds what the node fed; the node is left with nothing on either side.
MStatus TakeOutOfLine(const MObject& node, MDGModifier& edits) {
    const MPlug in = Find(node, "inputGeom"), out = Find(node, "outputGeom"), source = in.source();
    MPlugArray fed;
    out.connectedTo(fed, false, true);
    for (const MPlug& destination : fed) {
        edits.disconnect(out, destination);
        if (!source.isNull()) edits.connect(source, destination);
    }
    Cut(in, edits);
    return edits.doIt();
}

/// Puts the node, which stands alone, between a plug and all that the plug feeds on the way.
MStatus InsertAfter(const MPlug& source, const MObject& node, MDGModifier& edits) {
    MPlugArray fed;
    source.connectedTo(fed, false, true);
    for (const MPlug& destination : fed) {
        if (GeometryOutputs(destination).empty()) continue;
        edits.disconnect(source, destination);
        edits.connect(Find(node, "outputGeom"), destination);
    }
    edits.connect(source, Find(node, "inputGeom"));
    CHECK_MSTATUS_AND_RETURN_IT(edits.doIt());
    Cut(Find(node, "inputGeomPreDef"), edits);
    CHECK_MSTATUS_AND_RETURN_IT(edits.doIt());
    CHECK_MSTATUS_AND_RETURN_IT(ConnectPreDeformed(node, edits));
    return edits.doIt();
}

/// Where a skin takes the geometry of the way that leads on from `output` to it.
MPlug SkinInput(const MObject& skin, const std::vector<MPlug>& outputs) {
    for (const MPlug& output : outputs)
        if (output.node() == skin) return GeometryInput(output);
    return MPlug();
}

MPlug SkinOutput(const MObject& skin, const std::vector<MPlug>& inputs) {
    for (const MPlug& input : inputs)
        if (input.node() == skin) return GeometryOutputs(input)[0];
    return MPlug();
}

}  // namespace

MStatus MoveBehindSkin(NodeCall& call) {
    const MObject skin = FindOutputSkin(call.node);
    if (skin.isNull()) return call.Fail("there is not Skin after Kelmo.");
    const MPlug output = SkinOutput(skin, GeometryBelow(MainGeometryOutput(call.node)));
    if (output.isNull()) return call.Fail("null 'outputGeometry[0]' plug of skinCluster node.");
    CHECK_MSTATUS_AND_RETURN_IT(TakeOutOfLine(call.node, call.command.Edits()));
    return InsertAfter(output, call.node, call.command.Edits());
}

MStatus MoveBeforeSkin(NodeCall& call) {
    const MObject skin = FindInputSkin(call.node);
    if (skin.isNull()) return call.Fail("there is not Skin before Kelmo.");
    const MPlug input = SkinInput(skin, GeometryAbove(MainGeometryInput(call.node)));
    const MPlug parts = input.source();
    if (parts.isNull() || !parts.node().hasFn(MFn::kGroupParts))
        return call.Fail("no skinCluster group parts.");
    const MPlug source = GeometryInput(parts).source();
    if (source.isNull()) return call.Fail("null 'inputGeometry' plug of skinCluster node.");
    CHECK_MSTATUS_AND_RETURN_IT(TakeOutOfLine(call.node, call.command.Edits()));
    return InsertAfter(source, call.node, call.command.Edits());
}

}  // namespace VantrelSDK
