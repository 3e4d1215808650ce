#pragma once

#include "maya/MDGModifier.h"

/// Edits of the hierarchy.
class MDagModifier : public MDGModifier {
  public:
    using MDGModifier::createNode;
    /// A transform or joint, or a shape below a parent; a shape without a parent gets a transform,
    /// which is what is answered.
    MObject createNode(const MTypeId& type, const MObject& parent, MStatus* status = nullptr);
    MObject createNode(const MString& type, const MObject& parent, MStatus* status = nullptr);
    MStatus reparentNode(const MObject& node, const MObject& parent = MObject::kNullObj);
};
