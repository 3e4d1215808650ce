#pragma once

#include <maya/M3dView.h>

namespace VantrelSDK {

/// What is seen in a place of a view, in pixels from its lower left corner: a line of the world
/// from the near clipping plane on. The direction has a length of 1.
struct ViewRay {
    MPoint origin;
    MVector dir;
    /// All rays of the view have this direction.
    bool parallel = false;
};

ViewRay RayAt(const M3dView& view, int x, int y);
/// How large a share of the view's width is in the world, where the ray through a place is at
/// `place`.
double WorldSize(const M3dView& view, int x, int y, const MPoint& place, double share);
/// The view's horizontal, to the right.
MVector ViewRight(const M3dView& view);

}  // namespace VantrelSDK
