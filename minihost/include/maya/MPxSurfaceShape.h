#pragma once

#include "maya/MBoundingBox.h"
#include "maya/MPxNode.h"

/// A module's own shape.
class MPxSurfaceShape : public MPxNode {
  public:
    Type type() const override { return kSurfaceShape; }
    virtual bool isBounded() const { return false; }
    /// In the shape's own coordinates.
    virtual MBoundingBox boundingBox() const { return {}; }
};
