#include "host/commands/KelmoPurge.h"

#include <maya/MFnPointArrayData.h>
#include <maya/MPlugArray.h>

#include "host/commands/KelmoTweaks.h"
#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/GeometryLine.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

/// What the node's work delta moves, by the vertices of the base mesh.
Tweaks WorkDelta(const MObject& node) {
    NodeProtocol protocol(node);
    BringUpToDate(node);
    protocol.SetText("");
    protocol.Ask(105);
    MPointArray points;
    MFnPointArrayData(protocol.data()).copyTo(points);
    Tweaks moved;
    for (unsigned i = 0; i < points.length(); ++i)
        if (points[i] != MPoint()) moved.emplace_back(i, points[i]);
    return moved;
}

/// What feeds the node feeds what the node fed.
MStatus Bypass(const MObject& node) {
    const MPlug source = MainGeometryInput(node).source(), output = MainGeometryOutput(node);
    MPlugArray fed;
    output.connectedTo(fed, false, true);
    for (const MPlug& destination : fed)
        if (!source.isNull())
            CHECK_MSTATUS_AND_RETURN_IT(RunUndoable("connectAttr -force " + Quoted(source.name()) +
                                                    " " + Quoted(destination.name())));
    return MS::kSuccess;
}

MStatus ReplaceByTweak(NodeCall& call, const MObject& node) {
    if (!IsKelmoNode2(node)) return call.Fail("can't replace by tweak, expected KelmoNode2");
    const Tweaks moved = WorkDelta(node);
    const MObject shape = FindOutputShape(node);
    CHECK_MSTATUS_AND_RETURN_IT(DeleteKelmo(node));
    return moved.empty() || shape.isNull() ? MStatus()
                                           : GatherTweaks(shape, call.command.Edits(), moved);
}

MStatus Purge(NodeCall& call, const MObject& node) {
    return call.words.isFlagSet("zerotweak") ? ReplaceByTweak(call, node) : DeleteKelmo(node);
}

}  // namespace

MStatus DeleteKelmo(const MObject& node) {
    // An open session shows a surface in the place of the mesh.
    if (MLNode* open = MLNode::FromObject(node); open && open->IsSculpting())
        NodeProtocol(node).Run(1);
    // Where a deformer was the host lets geometry pass by itself.
    if (IsKelmoNode2(node)) CHECK_MSTATUS_AND_RETURN_IT(Bypass(node));
    return RunUndoable("delete " + Quoted(NameOf(node)));
}

MStatus PurgeAll(NodeCall& call) {
    for (const unsigned id : {kKelmoNode2Id, kKelmoNodeId})
        for (const MObject& node : FindNodesByTypeId(MTypeId(id)))
            CHECK_MSTATUS_AND_RETURN_IT(Purge(call, node));
    return MS::kSuccess;
}

MStatus PurgeThis(NodeCall& call) {
    return Purge(call, call.node);
}

MStatus PurgeNamed(NodeCall& call) {
    MString name;
    if (!call.Argument(0, name)) return MS::kFailure;
    const MObject node = FindNodeByName(name);
    if (!IsKelmo(node)) return call.Fail("name a Kelmo node to purge.");
    return Purge(call, node);
}

}  // namespace VantrelSDK
