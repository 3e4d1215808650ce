#include "host/commands/KelmoProxy.h"

#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MPlugArray.h>

#include "host/commands/KelmoTweaks.h"
#include "host/nodes/Finders.h"
#include "host/nodes/GeometryLine.h"

namespace VantrelSDK {

namespace {

MPlug OutputOf(const MObject& node, const char* name) {
    return MFnDependencyNode(node).findPlug(name);
}

/// The mesh that the node's proxy output feeds.
MObject FindProxy(const MObject& node) {
    MPlugArray fed;
    OutputOf(node, "outputProxy").connectedTo(fed, false, true);
    for (const MPlug& input : fed)
        if (input.node().hasFn(MFn::kMesh)) return input.node();
    return MObject();
}

/// A way leads from a plug to a skin.
bool LeadsToSkin(const MPlug& input) {
    if (input.node().hasFn(MFn::kSkinClusterFilter)) return true;
    for (const MPlug& output : GeometryOutputs(input))
        for (const MPlug& next : GeometryBelow(output))
            if (next.node().hasFn(MFn::kSkinClusterFilter)) return true;
    return false;
}

/// What a plug feeds on the way to a skin is fed by another.
MStatus MoveSkin(const MPlug& from, const MPlug& to) {
    MPlugArray fed;
    from.connectedTo(fed, false, true);
    for (const MPlug& input : fed) {
        if (!LeadsToSkin(input)) continue;
        const MString there = Quoted(input.name());
        CHECK_MSTATUS_AND_RETURN_IT(
            RunUndoable("disconnectAttr " + Quoted(from.name()) + " " + there));
        CHECK_MSTATUS_AND_RETURN_IT(RunUndoable("connectAttr " + Quoted(to.name()) + " " + there));
    }
    return MS::kSuccess;
}

MStatus CreateNode(const char* type, const char* name, const MString& parent, MString& made) {
    return MGlobal::executeCommand(MString("createNode ") + type + " -skipSelect -name " +
                                       Quoted(name) + " -parent " + Quoted(parent),
                                   made, false, true);
}

MStatus CreateProxy(NodeCall& call) {
    const MObject shape = FindOutputShape(call.node);
    if (shape.isNull()) return call.Fail("can't connect child");
    MString transform, mesh;
    const MString parent = NameOf(MFnDagNode(shape).parent(0));
    CHECK_MSTATUS_AND_RETURN_IT(CreateNode("transform", "proxy", parent, transform));
    CHECK_MSTATUS_AND_RETURN_IT(CreateNode("mesh", "proxyShape", transform, mesh));
    const MString from = OutputOf(call.node, "outputProxy").name();
    if (!RunUndoable("connectAttr " + Quoted(from) + " " + Quoted(mesh + ".inMesh")))
        return call.Fail("can't connect child");
    return MoveSkin(OutputOf(call.node, "outputGeom"), OutputOf(FindProxy(call.node), "outMesh"));
}

MStatus DeleteProxy(NodeCall& call, const MObject& mesh) {
    CHECK_MSTATUS_AND_RETURN_IT(
        MoveSkin(OutputOf(mesh, "outMesh"), OutputOf(call.node, "outputGeom")));
    return RunUndoable("delete " + Quoted(NameOf(MFnDagNode(mesh).parent(0))));
}

}  // namespace

MStatus TellProxy(NodeCall& call) {
    MPxCommand::setResult(int{!FindProxy(call.node).isNull()});
    return MS::kSuccess;
}

MStatus MakeOrDeleteProxy(NodeCall& call) {
    bool on = false;
    if (!call.Argument(0, on)) return MS::kFailure;
    const MObject mesh = FindProxy(call.node);
    if (on == !mesh.isNull()) return MS::kSuccess;
    return on ? CreateProxy(call) : DeleteProxy(call, mesh);
}

}  // namespace VantrelSDK
