#include "host/tools/ToolLocators.h"

#include <maya/MFnDagNode.h>
#include <maya/MPlugArray.h>

#include "host/nodes/NodeTypes.h"
#include "host/tools/KelmoToolLocator.h"

namespace VantrelSDK {

namespace {

MPlug LocatorPlug(const MObjectHandle& transform, const MObject& attribute) {
    if (!transform.isValid()) return MPlug();
    const MFnDagNode above(transform.objectRef());
    return above.childCount() > 0 ? MPlug(above.child(0), attribute) : MPlug();
}

void Put(MPlug plug, int value) {
    if (!plug.isNull() && plug.asInt() != value) plug.setValue(value);
}

}  // namespace

MObject CreateToolLocator(MDagModifier& edits) {
    const MObject transform = edits.createNode(MTypeId(kToolLocatorId), MObject::kNullObj);
    if (transform.isNull() || !edits.doIt()) return MObject();
    MFnDependencyNode(transform).setDoNotWrite(true);
    return transform;
}

bool DeleteToolLocator(MDagModifier& edits, const MObjectHandle& transform) {
    if (!transform.isValid()) return true;
    const MPlug matrix = MFnDependencyNode(transform.objectRef()).findPlug("matrix");
    MPlugArray fed;
    matrix.connectedTo(fed, false, true);
    for (const MPlug& plug : fed) edits.disconnect(matrix, plug);
    edits.deleteNode(transform.objectRef());
    return bool{edits.doIt()};
}

void SetVisibility2(const MObjectHandle& transform, bool on) {
    Put(LocatorPlug(transform, KelmoToolLocator::visibility2), on);
}

void SetBrushShape(const MObjectHandle& transform, int mode) {
    Put(LocatorPlug(transform, KelmoToolLocator::brushShape),
        LiesOnSurface(mode) ? KelmoToolLocator::kLiesOnSurface : KelmoToolLocator::kFacesView);
}

}  // namespace VantrelSDK
