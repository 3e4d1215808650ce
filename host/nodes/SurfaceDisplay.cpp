#include "host/nodes/SurfaceDisplay.h"

#include <maya/MDagModifier.h>
#include <maya/MFnDagNode.h>
#include <maya/MPlugArray.h>

#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

/// The surfaces that show a node.
MObjectArray SurfacesOf(const MLNode& node) {
    MPlugArray fed;
    node.plug(&NodeAttributes::m_moDisplayCbk).connectedTo(fed, false, true);
    MObjectArray surfaces;
    for (const MPlug& input : fed)
        if (MFnDependencyNode(input.node()).typeId() == MTypeId(kSurfaceShapeId))
            surfaces.append(input.node());
    return surfaces;
}

MPlug VisibilityOf(const MObject& shape) {
    return MFnDependencyNode(shape).findPlug("visibility");
}

}  // namespace

void ShowSurface(MLNode& node) {
    const MObject shape = FindOutputShape(node.getThisMObject());
    if (node.nodeClass() != NodeClass::kNode2 || shape.isNull() || SurfacesOf(node).length() > 0)
        return;
    MDagModifier edits;
    const MObject surface = edits.createNode(MTypeId(kSurfaceShapeId), MFnDagNode(shape).parent(0));
    if (surface.isNull()) return;
    edits.connect(node.plug(&NodeAttributes::m_moDisplayCbk),
                  MFnDependencyNode(surface).findPlug("displayCbk"));
    if (!edits.doIt()) return;
    MPlug visibility = VisibilityOf(shape);
    node.hidMesh = visibility.asBool();
    if (node.hidMesh) visibility.setValue(false);
}

void HideSurface(MLNode& node) {
    MDagModifier edits;
    for (const MObject& surface : SurfacesOf(node)) edits.deleteNode(surface);
    edits.doIt();
    if (!node.hidMesh) return;
    const MObject shape = FindOutputShape(node.getThisMObject());
    if (!shape.isNull()) VisibilityOf(shape).setValue(true);
    node.hidMesh = false;
}

}  // namespace VantrelSDK
