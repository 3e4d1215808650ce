#pragma once

#include "maya/MDagPath.h"
#include "maya/MMatrix.h"
#include "maya/MPoint.h"
#include "maya/MStatus.h"
#include "maya/MVector.h"

namespace minihost {
class View;
}
// Of the display: an Xt widget and a connection of Xlib.
struct _WidgetRec;
struct _XDisplay;

/// A view of the scene through a camera: a picture that is drawn without a display, or a window.
/// Copies name the same view. Positions in a view count from its lower left corner, in pixels.
class M3dView {
  public:
    enum DisplayStyle {
        kBoundingBox,
        kFlatShaded,
        kGouraudShaded,
        kWireFrame,
        kPoints,
    };
    enum DisplayStatus { kActive, kDormant };

    M3dView() = default;
    /// `view` is borrowed, null for none.
    explicit M3dView(minihost::View* view) : view_(view) {}

    /// The view that was drawn or used last; where there is none yet, the one named "persp". Fails
    /// where nothing can be drawn.
    static M3dView active3dView(MStatus* status = nullptr);
    static unsigned numberOf3dViews();
    static MStatus get3dView(unsigned index, M3dView& view);

    /// Between the two OpenGL draws into the view, with its matrices loaded when the host draws.
    MStatus beginGL();
    MStatus endGL();

    int portWidth(MStatus* status = nullptr) const;
    int portHeight(MStatus* status = nullptr) const;
    MStatus viewport(unsigned& x, unsigned& y, unsigned& width, unsigned& height) const;
    /// The camera's shape.
    MStatus getCamera(MDagPath& camera) const;
    /// Camera to clip space, and world to camera, for rows.
    MStatus projectionMatrix(MMatrix& matrix) const;
    MStatus modelViewMatrix(MMatrix& matrix) const;
    /// Where a point of the world is seen. False for one that is not before the camera, between its
    /// clipping planes and within the view; one that is merely beside the view has a place still.
    bool worldToView(const MPoint& world, short& x, short& y, MStatus* status = nullptr) const;
    /// The points of the world that are seen in a place, on the near and the far clipping plane.
    MStatus viewToWorld(short x, short y, MPoint& nearPoint, MPoint& farPoint) const;
    /// The ray that is seen in a place.
    MStatus viewToWorld(short x, short y, MPoint& origin, MVector& direction) const;

    /// Draws anew: this view or `all`. In a window that is done with the next frame, or at once
    /// with `force`.
    MStatus refresh(bool all = false, bool force = false);

    /// What takes the pointer's events of a view in a window (`Widget`, whose pixels are the
    /// view's, y downward), the connection (`Display*`) and the window's number (`Window`); null
    /// and 0 for a view without a window.
    _WidgetRec* widget() const;
    _XDisplay* display() const;
    unsigned long window() const;

    bool operator==(const M3dView& other) const { return view_ == other.view_; }
    minihost::View* view() const { return view_; }

  private:
    minihost::View* view_ = nullptr;
};
