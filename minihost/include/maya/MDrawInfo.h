#pragma once

#include "maya/M3dView.h"
#include "maya/MDagPath.h"
#include "maya/MDrawRequest.h"
#include "maya/MMatrix.h"

/// What a view tells a shape that it is about to draw.
class MDrawInfo {
  public:
    MDrawInfo(const M3dView& view, const MDagPath& path) : view_(view), path_(path) {}

    M3dView view() const { return view_; }
    MDagPath multiPath() const { return path_; }
    M3dView::DisplayStyle displayStyle() const { return M3dView::kGouraudShaded; }
    /// Camera to clip space.
    MMatrix projectionMatrix() const {
        MMatrix matrix;
        view_.projectionMatrix(matrix);
        return matrix;
    }
    /// The shape's own coordinates to the world.
    MMatrix inclusiveMatrix() const { return path_.inclusiveMatrix(); }
    /// A request of this shape in this view.
    MDrawRequest getPrototype(const MPxSurfaceShapeUI& shape) const {
        return MDrawRequest(path_, &shape);
    }

  private:
    M3dView view_;
    MDagPath path_;
};
