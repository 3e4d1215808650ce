#pragma once

#include "maya/MBoundingBox.h"
#include "maya/MDagPath.h"
#include "maya/MFnDependencyNode.h"

namespace minihost {
class DagNode;
}

/// A node of the hierarchy.
class MFnDagNode : public MFnDependencyNode {
  public:
    MFnDagNode() = default;
    explicit MFnDagNode(const MObject& node, MStatus* status = nullptr);
    explicit MFnDagNode(const MDagPath& path, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kDagNode; }

    /// Makes a transform, or a shape with a transform above it when there is no parent; answers
    /// the transform, or the shape below a parent. Outside the undo queue.
    MObject create(const MTypeId& type, const MString& name,
                   const MObject& parent = MObject::kNullObj, MStatus* status = nullptr);
    MObject create(const MString& type, const MString& name,
                   const MObject& parent = MObject::kNullObj, MStatus* status = nullptr);

    unsigned parentCount(MStatus* status = nullptr) const;
    MObject parent(unsigned index, MStatus* status = nullptr) const;
    unsigned childCount(MStatus* status = nullptr) const;
    MObject child(unsigned index, MStatus* status = nullptr) const;
    MStatus addChild(const MObject& child);
    bool isParentOf(const MObject& node, MStatus* status = nullptr) const;
    bool isChildOf(const MObject& node, MStatus* status = nullptr) const;
    bool isInstanceable(MStatus* status = nullptr) const;
    bool isIntermediateObject(MStatus* status = nullptr) const;
    MStatus setIntermediateObject(bool on);
    MStatus getPath(MDagPath& path) const;
    MDagPath dagPath(MStatus* status = nullptr) const;
    MString fullPathName(MStatus* status = nullptr) const;
    MString partialPathName(MStatus* status = nullptr) const;
    MMatrix transformationMatrix(MStatus* status = nullptr) const;
    /// In the coordinates of the node's parent.
    MBoundingBox boundingBox(MStatus* status = nullptr) const;

  protected:
    minihost::DagNode* dag(MStatus* status) const;
};
