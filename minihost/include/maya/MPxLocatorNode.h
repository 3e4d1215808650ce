#pragma once

#include "maya/MBoundingBox.h"
#include "maya/MPxNode.h"

/// A module's own locator: a shape below a transform, drawn by the module.
class MPxLocatorNode : public MPxNode {
  public:
    Type type() const override { return kLocatorNode; }
    virtual bool isBounded() const { return false; }
    /// In the locator's own coordinates.
    virtual MBoundingBox boundingBox() const { return {}; }
};
