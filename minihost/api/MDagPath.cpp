#include "maya/MDagPath.h"

#include "minihost/api/Status.h"
#include "minihost/dag/DagNode.h"

using minihost::DagNode;
using minihost::Tell;

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
    if (!node.as<DagNode>()) return MS::kInvalidParameter;
    path = MDagPath(node);
    return MS::kSuccess;
}

DagNode* MDagPath::Dag(MStatus* status) const {
    auto* dag = node_.as<DagNode>();
    Tell(status, dag ? MS::kSuccess : MS::kFailure);
    return dag;
}

bool MDagPath::isValid(MStatus* status) const {
    Tell(status, MS::kSuccess);
    const auto* dag = node_.as<DagNode>();
    return dag && dag->isInScene();
}

MObject MDagPath::node(MStatus* status) const {
    return Dag(status) ? node_ : MObject();
}

MObject MDagPath::transform(MStatus* status) const {
    DagNode* dag = Dag(status);
    if (!dag) return {};
    return dag->IsShape() && dag->parent() ? MObject(dag->parent()->ShareDag()) : node_;
}

unsigned MDagPath::length(MStatus* status) const {
    unsigned count = 0;
    for (const DagNode* dag = Dag(status); dag && dag->parent(); dag = dag->parent()) ++count;
    return count;
}

MStatus MDagPath::pop(unsigned count) {
    DagNode* dag = Dag(nullptr);
    for (; dag && count > 0; --count) dag = dag->parent();
    if (!dag) return MS::kFailure;
    node_ = MObject(dag->ShareDag());
    return MS::kSuccess;
}

MStatus MDagPath::push(const MObject& child) {
    const auto* below = child.as<DagNode>();
    if (!below || below->parent() != Dag(nullptr)) return MS::kInvalidParameter;
    node_ = child;
    return MS::kSuccess;
}

unsigned MDagPath::childCount(MStatus* status) const {
    const DagNode* dag = Dag(status);
    return dag ? static_cast<unsigned>(dag->children().size()) : 0;
}

MObject MDagPath::child(unsigned index, MStatus* status) const {
    const DagNode* dag = Dag(status);
    const bool is = dag && index < dag->children().size();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter) ? MObject(dag->children()[index])
                                                                   : MObject();
}

unsigned MDagPath::numberOfShapesDirectlyBelow(unsigned& count, MStatus* status) const {
    count = 0;
    if (const DagNode* dag = Dag(status))
        for (const auto& child : dag->children()) count += child->IsShape();
    return count;
}

MStatus MDagPath::extendToShape() {
    DagNode* dag = Dag(nullptr);
    DagNode* shape = dag ? dag->Shape() : nullptr;
    if (!shape) return MS::kInvalidParameter;
    node_ = MObject(shape->ShareDag());
    return MS::kSuccess;
}

unsigned MDagPath::instanceNumber(MStatus* status) const {
    Dag(status);
    return 0;
}

MMatrix MDagPath::inclusiveMatrix(MStatus* status) const {
    DagNode* dag = Dag(status);
    return dag ? dag->WorldMatrix() : MMatrix();
}

MMatrix MDagPath::inclusiveMatrixInverse(MStatus* status) const {
    return inclusiveMatrix(status).inverse();
}

MMatrix MDagPath::exclusiveMatrix(MStatus* status) const {
    DagNode* dag = Dag(status);
    return dag && dag->parent() && dag->parent()->parent() ? dag->parent()->WorldMatrix()
                                                           : MMatrix();
}

MMatrix MDagPath::exclusiveMatrixInverse(MStatus* status) const {
    return exclusiveMatrix(status).inverse();
}

MString MDagPath::fullPathName(MStatus* status) const {
    const DagNode* dag = Dag(status);
    return dag && dag->parent() ? MString(dag->Path()) : MString();
}

MString MDagPath::partialPathName(MStatus* status) const {
    const DagNode* dag = Dag(status);
    return dag && dag->parent() ? MString(dag->UniqueName()) : MString();
}
