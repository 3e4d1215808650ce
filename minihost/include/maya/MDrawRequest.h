#pragma once

#include "maya/M3dView.h"
#include "maya/MDagPath.h"
#include "maya/MDrawData.h"
#include "maya/MPxSurfaceShapeUI.h"

/// One thing that a shape wants drawn in a view; the shape is asked to do it when its turn comes.
class MDrawRequest {
  public:
    MDrawRequest() = default;
    MDrawRequest(const MDagPath& path, const MPxSurfaceShapeUI* component)
        : path_(path), component_(component) {}

    /// A number of the shape's own.
    int token() const { return token_; }
    void setToken(int token) { token_ = token; }
    M3dView::DisplayStyle displayStyle() const { return style_; }
    void setDisplayStyle(M3dView::DisplayStyle style) { style_ = style; }
    MDrawData drawData() const { return data_; }
    void setDrawData(const MDrawData& data) { data_ = data; }
    /// The shape's place.
    MDagPath multiPath() const { return path_; }
    const MPxSurfaceShapeUI* component() const { return component_; }

  private:
    MDagPath path_;
    const MPxSurfaceShapeUI* component_ = nullptr;
    MDrawData data_;
    M3dView::DisplayStyle style_ = M3dView::kGouraudShaded;
    int token_ = 0;
};
