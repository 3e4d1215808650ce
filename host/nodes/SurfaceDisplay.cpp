#include "host/nodes/SurfaceDisplay.h"

#include <maya/MDagModifier.h>
#include <maya/MFnDagNode.h>
#include <maya/MPlugArray.h>

#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

bool IsSurface(const MObject& node) {
    return MFnDependencyNode(node).typeId() == MTypeId(kSurfaceShapeId);
}

/// The surfaces that show a node.
MObjectArray SurfacesOf(const MLNode& node) {
    MPlugArray fed;
    node.plug(&NodeAttributes::m_moDisplayCbk).connectedTo(fed, false, true);
    MObjectArray surfaces;
    for (const MPlug& input : fed)
        if (IsSurface(input.node())) surfaces.append(input.node());
    return surfaces;
}

/// Whether the mesh below the same transform is seen; null where there is none.
MPlug MeshBeside(const MObject& surface) {
    const MFnDagNode above(MFnDagNode(surface).parent(0));
    for (unsigned i = 0; i < above.childCount(); ++i) {
        const MObject child = above.child(i);
        if (child.hasFn(MFn::kMesh) && !MFnDagNode(child).isIntermediateObject())
            return MFnDependencyNode(child).findPlug("visibility");
    }
    return MPlug();
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
    edits.doIt();
}

void HideSurface(MLNode& node) {
    MDagModifier edits;
    for (const MObject& surface : SurfacesOf(node)) edits.deleteNode(surface);
    edits.doIt();
}

void SurfaceConnected(MLNode& node, const MObject& surface) {
    if (!IsSurface(surface) || !node.IsSculpting() || node.hidMesh) return;
    MPlug visibility = MeshBeside(surface);
    if (visibility.isNull() || !visibility.asBool()) return;
    visibility.setValue(false);
    node.hidMesh = true;
}

void SurfaceDisconnected(MLNode& node, const MObject& surface) {
    if (!IsSurface(surface) || !node.hidMesh) return;
    node.hidMesh = false;
    MPlug visibility = MeshBeside(surface);
    if (!visibility.isNull()) visibility.setValue(true);
}

}  // namespace VantrelSDK
