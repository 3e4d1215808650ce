#include "maya/MFnCamera.h"

#include "minihost/api/Status.h"

using minihost::Tell;

namespace {

// Apertures are in inches, focal lengths in millimetres.
constexpr double kMillimetres = 25.4;

}  // namespace

MFnCamera::MFnCamera(const MObject& node, MStatus* status) {
    MDagPath path(node);
    if (node.hasFn(MFn::kTransform)) path.extendToShape();
    object_ = path.node().hasFn(MFn::kCamera) ? path.node() : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MFnCamera::MFnCamera(const MDagPath& path, MStatus* status) : MFnCamera(path.node(), status) {}

MMatrix MFnCamera::Placement(MSpace::Space space) const {
    return space == MSpace::kWorld ? MDagPath(object_).inclusiveMatrix() : MMatrix();
}

double MFnCamera::Number(const char* attribute, MStatus* status) const {
    return findPlug(attribute, status).asDouble();
}

MPoint MFnCamera::eyePoint(MSpace::Space space, MStatus* status) const {
    return Tell(status, node() ? MS::kSuccess : MS::kFailure, MPoint() * Placement(space));
}

MVector MFnCamera::viewDirection(MSpace::Space space, MStatus* status) const {
    return Tell(status, node() ? MS::kSuccess : MS::kFailure,
                (MVector(0, 0, -1) * Placement(space)).normal());
}

MVector MFnCamera::upDirection(MSpace::Space space, MStatus* status) const {
    return Tell(status, node() ? MS::kSuccess : MS::kFailure,
                (MVector(0, 1, 0) * Placement(space)).normal());
}

MVector MFnCamera::rightDirection(MSpace::Space space, MStatus* status) const {
    return Tell(status, node() ? MS::kSuccess : MS::kFailure,
                (MVector(1, 0, 0) * Placement(space)).normal());
}

MPoint MFnCamera::centerOfInterestPoint(MSpace::Space space, MStatus* status) const {
    return eyePoint(space, status) + viewDirection(space) * Number("centerOfInterest", status);
}

bool MFnCamera::isOrtho(MStatus* status) const {
    return Number("orthographic", status) != 0;
}
double MFnCamera::orthoWidth(MStatus* status) const {
    return Number("orthographicWidth", status);
}
double MFnCamera::nearClippingPlane(MStatus* status) const {
    return Number("nearClipPlane", status);
}
double MFnCamera::farClippingPlane(MStatus* status) const {
    return Number("farClipPlane", status);
}

double MFnCamera::horizontalFieldOfView(MStatus* status) const {
    return 2 * std::atan(Number("horizontalFilmAperture", status) * kMillimetres / 2 /
                         Number("focalLength", status));
}

double MFnCamera::verticalFieldOfView(MStatus* status) const {
    return 2 * std::atan(Number("verticalFilmAperture", status) * kMillimetres / 2 /
                         Number("focalLength", status));
}

double MFnCamera::aspectRatio(MStatus* status) const {
    return Number("horizontalFilmAperture", status) / Number("verticalFilmAperture", status);
}
