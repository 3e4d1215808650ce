#pragma once

#include "maya/MMatrix.h"
#include "maya/MObject.h"
#include "maya/MStatus.h"
#include "maya/MString.h"

namespace minihost {
class DagNode;
}

/// The way from the root of the hierarchy to a node. Every node has one: there is no instancing.
class MDagPath {
  public:
    MDagPath() = default;
    explicit MDagPath(MObject node) : node_(std::move(node)) {}

    /// The path of a DAG node.
    static MStatus getAPathTo(const MObject& node, MDagPath& path);

    bool isValid(MStatus* status = nullptr) const;
    MObject node(MStatus* status = nullptr) const;
    MFn::Type apiType(MStatus* status = nullptr) const { return node(status).apiType(); }
    bool hasFn(MFn::Type kind, MStatus* status = nullptr) const { return node(status).hasFn(kind); }
    /// The node itself, or the transform that it is below.
    MObject transform(MStatus* status = nullptr) const;
    unsigned length(MStatus* status = nullptr) const;
    /// Up by some nodes.
    MStatus pop(unsigned count = 1);
    /// Down to a child.
    MStatus push(const MObject& child);
    unsigned childCount(MStatus* status = nullptr) const;
    MObject child(unsigned index, MStatus* status = nullptr) const;
    /// Down to the only shape below; fails where there is none.
    MStatus extendToShape();
    unsigned numberOfShapesDirectlyBelow(unsigned& count, MStatus* status = nullptr) const;
    unsigned instanceNumber(MStatus* status = nullptr) const;

    MMatrix inclusiveMatrix(MStatus* status = nullptr) const;
    MMatrix inclusiveMatrixInverse(MStatus* status = nullptr) const;
    MMatrix exclusiveMatrix(MStatus* status = nullptr) const;
    MMatrix exclusiveMatrixInverse(MStatus* status = nullptr) const;
    /// "|group|head".
    MString fullPathName(MStatus* status = nullptr) const;
    /// As much of it as is needed to find the node.
    MString partialPathName(MStatus* status = nullptr) const;

    bool operator==(const MDagPath& other) const { return node_ == other.node_; }
    bool operator!=(const MDagPath& other) const { return !(*this == other); }

  private:
    minihost::DagNode* Dag(MStatus* status) const;

    MObject node_;
};
