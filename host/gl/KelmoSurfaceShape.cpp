#include "host/gl/KelmoSurfaceShape.h"

#include <maya/MFnAttribute.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnPluginData.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MGlobal.h>
#include <maya/MPlugArray.h>

#include "host/gl/KelmoSurfaceCallback.h"
#include "host/ml/MLNode.h"
#include "host/nodes/KelmoNode2.h"

namespace VantrelSDK {

MObject KelmoSurfaceShape::displayCbk;

MStatus KelmoSurfaceShape::initialize() {
    MStatus status;
    MFnTypedAttribute typed;
    displayCbk = typed.create("displayCbk", "dcb", MTypeId(kSurfaceCallbackId), &status);
    if (status) {
        typed.setStorable(false);
        typed.setHidden(true);
        status = addAttribute(displayCbk);
    }
    if (!status) MGlobal::displayError("KelmoSurfaceShape: can not add displayCbk attribute\n");
    return status;
}

MStatus KelmoSurfaceShape::legalConnection(const MPlug& plug, const MPlug& other, bool asSrc,
                                           bool& isLegal) const {
    if (asSrc || plug != displayCbk) return MS::kUnknownParameter;
    isLegal = MFnDependencyNode(other.node()).typeId() == MTypeId(KelmoNode2::id);
    return MS::kSuccess;
}

bool KelmoSurfaceShape::isBounded() const {
    const KelmoSurfaceCallback* callback = Pull(false);
    return callback && callback->cache();
}

MBoundingBox KelmoSurfaceShape::boundingBox() const {
    const KelmoSurfaceCallback* callback = Pull(false);
    return callback ? callback->getBoundingBox() : KelmoSurfaceCallback().getBoundingBox();
}

KelmoSurfaceCallback* KelmoSurfaceShape::getDisplayCallback() const {
    return Pull(true);
}

KelmoSurfaceCallback* KelmoSurfaceShape::Pull(bool tell) const {
    const auto refuse = [tell](const char* why) -> KelmoSurfaceCallback* {
        if (tell) MGlobal::displayError(MString("KelmoSurfaceShape: ") + why);
        return nullptr;
    };
    const MPlug plug(thisMObject(), displayCbk);
    if (plug.isNull()) return refuse("NULL dispCbk plug");
    // A value that was left behind names a node that may be gone.
    MPlugArray sources;
    plug.connectedTo(sources, true, false);
    const MObject value = plug.asMObject();
    if (sources.length() == 0 || value.isNull()) return refuse("Can not retrieve object");
    MStatus status;
    MFnPluginData data(value, &status);
    if (!status) return refuse("can not grab callback data");
    if (data.typeId() != MTypeId(kSurfaceCallbackId)) return refuse("data typeIds do not match");
    auto* callback = static_cast<KelmoSurfaceCallback*>(data.data());
    const bool own = callback && callback->kelmo == MLNode::FromObject(sources[0].node());
    return own ? callback : refuse("Can not retrieve object");
}

}  // namespace VantrelSDK
