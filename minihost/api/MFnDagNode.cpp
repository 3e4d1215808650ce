#include "maya/MFnDagNode.h"

#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Modifier.h"

using minihost::DagNode;
using minihost::Host;
using minihost::Tell;

MFnDagNode::MFnDagNode(const MObject& node, MStatus* status) {
    object_ = node.hasFn(MFn::kDagNode) ? node : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MFnDagNode::MFnDagNode(const MDagPath& path, MStatus* status) : MFnDagNode(path.node(), status) {}

DagNode* MFnDagNode::dag(MStatus* status) const {
    auto* node = object_.as<DagNode>();
    Tell(status, node ? MS::kSuccess : MS::kFailure);
    return node;
}

namespace {

MObject Create(const minihost::NodeTypePtr& type, const MString& name, const MObject& parent,
               MStatus* status) {
    const bool can = type && !type->isAbstract && type->IsDag();
    if (!Tell(status, can ? MS::kSuccess : MS::kInvalidParameter)) return {};
    minihost::Modifier edits(Host::Get().scene);
    auto* above = parent.as<DagNode>();
    if (type->IsShape() && !above)
        return MObject(edits.CreateShape(type, name.str())->parent()->ShareDag());
    return MObject(edits.Create(type, name.str(), above));
}

}  // namespace

MObject MFnDagNode::create(const MTypeId& type, const MString& name, const MObject& parent,
                           MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type), name, parent, status);
}

MObject MFnDagNode::create(const MString& type, const MString& name, const MObject& parent,
                           MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type.str()), name, parent, status);
}

unsigned MFnDagNode::parentCount(MStatus* status) const {
    const DagNode* node = dag(status);
    return node && node->parent() ? 1 : 0;
}

MObject MFnDagNode::parent(unsigned index, MStatus* status) const {
    const DagNode* node = dag(status);
    const bool is = node && node->parent() && index == 0;
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MObject(node->parent()->ShareDag())
               : MObject();
}

unsigned MFnDagNode::childCount(MStatus* status) const {
    return MDagPath(object_).childCount(status);
}

MObject MFnDagNode::child(unsigned index, MStatus* status) const {
    return MDagPath(object_).child(index, status);
}

MStatus MFnDagNode::addChild(const MObject& child) {
    auto* below = child.as<DagNode>();
    DagNode* node = dag(nullptr);
    if (!node || !below) return MS::kInvalidParameter;
    minihost::Modifier edits(node->scene());
    return edits.Reparent(below->ShareDag(), node) ? MS::kSuccess : MS::kFailure;
}

bool MFnDagNode::isParentOf(const MObject& child, MStatus* status) const {
    const auto* below = child.as<DagNode>();
    const DagNode* node = dag(status);
    return node && below && below->parent() == node;
}

bool MFnDagNode::isChildOf(const MObject& parent, MStatus* status) const {
    const DagNode* node = dag(status);
    return node && !parent.isNull() && node->parent() == parent.as<DagNode>();
}

bool MFnDagNode::isInstanceable(MStatus* status) const {
    dag(status);
    return false;
}

bool MFnDagNode::isIntermediateObject(MStatus* status) const {
    return findPlug("intermediateObject", status).asBool();
}

MStatus MFnDagNode::setIntermediateObject(bool on) {
    return findPlug("intermediateObject").setValue(on);
}

MStatus MFnDagNode::getPath(MDagPath& path) const {
    return MDagPath::getAPathTo(object_, path);
}

MDagPath MFnDagNode::dagPath(MStatus* status) const {
    dag(status);
    return MDagPath(object_);
}

MString MFnDagNode::fullPathName(MStatus* status) const {
    return MDagPath(object_).fullPathName(status);
}

MString MFnDagNode::partialPathName(MStatus* status) const {
    return MDagPath(object_).partialPathName(status);
}

MMatrix MFnDagNode::transformationMatrix(MStatus* status) const {
    DagNode* node = dag(status);
    return node ? node->Matrix() : MMatrix();
}

MBoundingBox MFnDagNode::boundingBox(MStatus* status) const {
    DagNode* node = dag(status);
    return node ? node->Bounds() : MBoundingBox();
}
