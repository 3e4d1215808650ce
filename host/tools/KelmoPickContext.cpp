#include "host/tools/KelmoPickContext.h"

#include <maya/M3dView.h>
#include <maya/MEvent.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>

#include "host/commands/NodeProtocol.h"
#include "host/nodes/Finders.h"
#include "host/tools/MeshPicker.h"
#include "host/tools/ViewRay.h"

namespace VantrelSDK {

namespace {

/// A mesh that is seen, and so is all above it.
bool IsSeen(const MDagPath& shape) {
    for (MDagPath at = shape; at.length() > 0; at.pop()) {
        const MFnDependencyNode node(at.node());
        const MPlug seen = node.findPlug("visibility"),
                    hidden = node.findPlug("intermediateObject");
        if ((!seen.isNull() && !seen.asBool()) || (!hidden.isNull() && hidden.asBool()))
            return false;
    }
    return true;
}

/// The first mesh on a ray.
MObject PickMesh(const ViewRay& ray) {
    MObject picked;
    double nearest = 0;
    for (MItDag walk(MItDag::kDepthFirst, MFn::kMesh); !walk.isDone(); walk.next()) {
        MDagPath path;
        MeshPicker::Hit hit;
        walk.getPath(path);
        if (!IsSeen(path) || !MeshPicker(path.node()).Pick(ray.origin, ray.dir, hit)) continue;
        if (!picked.isNull() && hit.distance >= nearest) continue;
        picked = path.node();
        nearest = hit.distance;
    }
    return picked;
}

int NumTriangles(const MObject& shape) {
    const MFnMesh mesh(shape);
    return mesh.numFaceVertices() - 2 * mesh.numPolygons();
}

}  // namespace

void KelmoPickContext::toolOnSetup(MEvent&) {
    setHelpString("Click on the mesh that becomes a target");
    setCursor(MCursor::handCursor);
    picked_ = false;
}

MStatus KelmoPickContext::doPress(MEvent& event) {
    if (event.mouseButton() != MEvent::kLeftMouse || !kelmo_.isValid()) return MS::kFailure;
    short x = 0, y = 0;
    event.getPosition(x, y);
    const MObject mesh = PickMesh(RayAt(M3dView::active3dView(), x, y));
    if (mesh.isNull()) return MS::kSuccess;
    if (NumTriangles(mesh) != NumTriangles(FindOutputShape(kelmo_.objectRef()))) {
        MGlobal::displayError(
            "topology mismatch - pick object with the same number of triangles\n");
        return MS::kFailure;
    }
    MGlobal::displayInfo("Picked: " + NameOf(mesh));
    NodeProtocol node(kelmo_.objectRef());
    node.Ask(22);
    node.Ask(19);
    node.SetIndex(node.index() - 1);
    node.SetData(MFnDependencyNode(mesh).findPlug("outMesh").asMObject());
    node.Run(16, 1111);
    picked_ = true;
    return MS::kSuccess;
}

MStatus KelmoPickContext::doRelease(MEvent&) {
    if (picked_) MGlobal::executeCommandOnIdle("setToolTo selectSuperContext");
    return MS::kSuccess;
}

}  // namespace VantrelSDK
