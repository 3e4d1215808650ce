#pragma once

#include "maya/M3dView.h"
#include "maya/MBoundingBox.h"
#include "maya/MDagPath.h"
#include "maya/MPxNode.h"

/// A module's own locator: a shape below a transform, drawn by the module.
class MPxLocatorNode : public MPxNode {
  public:
    Type type() const override { return kLocatorNode; }
    /// Draws in the locator's own coordinates, between view.beginGL() and view.endGL().
    virtual void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
                      M3dView::DisplayStatus status);
    virtual bool isBounded() const { return false; }
    /// In the locator's own coordinates.
    virtual MBoundingBox boundingBox() const { return {}; }
};
