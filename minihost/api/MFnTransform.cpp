#include "maya/MFnTransform.h"

#include "minihost/api/Status.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"

using minihost::Slot;
using minihost::Tell;

MFnTransform::MFnTransform(const MObject& node, MStatus* status) {
    object_ = node.hasFn(MFn::kTransform) ? node : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MFnTransform::MFnTransform(const MDagPath& path, MStatus* status)
    : MFnTransform(path.node(), status) {}

MObject MFnTransform::create(const MObject& parent, MStatus* status) {
    return MFnDagNode::create("transform", MString(), parent, status);
}

MVector MFnTransform::Get(const char* attribute, MStatus* status) const {
    MVector v;
    Slot* slot = node() ? node()->FindSlot(attribute) : nullptr;
    if (!Tell(status, slot ? MS::kSuccess : MS::kFailure)) return v;
    for (unsigned i = 0; i < 3; ++i) v[i] = minihost::NumberOf(minihost::Pull(*slot->parts[i]));
    return v;
}

MStatus MFnTransform::Put(const char* attribute, const MVector& value) {
    Slot* slot = node() ? node()->FindSlot(attribute) : nullptr;
    const double numbers[3] = {value.x, value.y, value.z};
    return slot ? minihost::WriteNumbers(*slot, numbers, 3) : MS::kFailure;
}

MTransformationMatrix MFnTransform::transformation(MStatus* status) const {
    return MTransformationMatrix(transformationMatrix(status));
}

MStatus MFnTransform::set(const MTransformationMatrix& t) {
    double scale[3], shear[3];
    t.getScale(scale, MSpace::kTransform);
    t.getShear(shear, MSpace::kTransform);
    MStatus status;
    for (const MStatus& part :
         {setTranslation(t.getTranslation(MSpace::kTransform), MSpace::kTransform),
          setRotation(t.eulerRotation()), setScale(scale), setShear(shear)})
        if (!part) status = part;
    return status;
}

MVector MFnTransform::getTranslation(MSpace::Space space, MStatus* status) const {
    if (space != MSpace::kWorld) return Get("translate", status);
    const MMatrix world = MDagPath(object_).inclusiveMatrix(status);
    return {world[3][0], world[3][1], world[3][2]};
}

MStatus MFnTransform::setTranslation(const MVector& translation, MSpace::Space space) {
    if (space != MSpace::kWorld) return Put("translate", translation);
    const MPoint local = MPoint(translation) * MDagPath(object_).exclusiveMatrixInverse();
    return Put("translate", {local.x, local.y, local.z});
}

MStatus MFnTransform::getRotation(MEulerRotation& rotation) const {
    MStatus status;
    const MVector turns = Get("rotate", &status);
    const int order = findPlug("rotateOrder").asInt();
    rotation = {turns.x, turns.y, turns.z, static_cast<MEulerRotation::RotationOrder>(order)};
    return status;
}

MStatus MFnTransform::setRotation(const MEulerRotation& rotation) {
    const auto order = static_cast<MEulerRotation::RotationOrder>(findPlug("rotateOrder").asInt());
    const MEulerRotation turns =
        rotation.order == order ? rotation : MEulerRotation::decompose(rotation.asMatrix(), order);
    return Put("rotate", {turns.x, turns.y, turns.z});
}

MStatus MFnTransform::getRotation(MQuaternion& rotation, MSpace::Space space) const {
    MStatus status;
    if (space == MSpace::kWorld) {
        rotation = MTransformationMatrix(MDagPath(object_).inclusiveMatrix(&status)).rotation();
        return status;
    }
    MEulerRotation turns;
    status = getRotation(turns);
    rotation = turns.asQuaternion();
    return status;
}

MStatus MFnTransform::setRotation(const MQuaternion& rotation, MSpace::Space space) {
    MQuaternion local = rotation;
    if (space == MSpace::kWorld)
        local =
            local * MTransformationMatrix(MDagPath(object_).exclusiveMatrix()).rotation().inverse();
    return setRotation(MEulerRotation::decompose(local.asMatrix(), MEulerRotation::kXYZ));
}

MStatus MFnTransform::getScale(double (&scale)[3]) const {
    MStatus status;
    const MVector v = Get("scale", &status);
    for (unsigned i = 0; i < 3; ++i) scale[i] = v[i];
    return status;
}

MStatus MFnTransform::setScale(const double (&scale)[3]) {
    return Put("scale", MVector(scale));
}

MStatus MFnTransform::getShear(double (&shear)[3]) const {
    MStatus status;
    const MVector v = Get("shear", &status);
    for (unsigned i = 0; i < 3; ++i) shear[i] = v[i];
    return status;
}

MStatus MFnTransform::setShear(const double (&shear)[3]) {
    return Put("shear", MVector(shear));
}
