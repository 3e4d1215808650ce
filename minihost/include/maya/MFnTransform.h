#pragma once

#include "maya/MEulerRotation.h"
#include "maya/MFnDagNode.h"
#include "maya/MQuaternion.h"
#include "maya/MSpace.h"
#include "maya/MTransformationMatrix.h"

/// A transform or joint. A part is written as a whole: what depends on it is told once.
class MFnTransform : public MFnDagNode {
  public:
    MFnTransform() = default;
    explicit MFnTransform(const MObject& node, MStatus* status = nullptr);
    explicit MFnTransform(const MDagPath& path, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kTransform; }

    using MFnDagNode::create;
    /// A transform, outside the undo queue.
    MObject create(const MObject& parent = MObject::kNullObj, MStatus* status = nullptr);

    MTransformationMatrix transformation(MStatus* status = nullptr) const;
    /// Fails, and sets what it can, where a part is fed by a connection.
    MStatus set(const MTransformationMatrix& transformation);
    /// In kWorld the parents' matrices count; in the others the node's own numbers.
    MVector getTranslation(MSpace::Space space, MStatus* status = nullptr) const;
    MStatus setTranslation(const MVector& translation, MSpace::Space space);
    MStatus getRotation(MEulerRotation& rotation) const;
    MStatus setRotation(const MEulerRotation& rotation);
    MStatus getRotation(MQuaternion& rotation, MSpace::Space space = MSpace::kTransform) const;
    MStatus setRotation(const MQuaternion& rotation, MSpace::Space space = MSpace::kTransform);
    MStatus getScale(double (&scale)[3]) const;
    MStatus setScale(const double (&scale)[3]);
    MStatus getShear(double (&shear)[3]) const;
    MStatus setShear(const double (&shear)[3]);

  private:
    MVector Get(const char* attribute, MStatus* status) const;
    MStatus Put(const char* attribute, const MVector& value);
};
