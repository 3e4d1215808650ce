#pragma once

#include <maya/M3dView.h>
#include <maya/MMatrix.h>

#include <algorithm>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// Pixels of a view, from (x0, y0) up to (x1, y1), which is not in it.
struct ScreenRect {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    bool IsEmpty() const { return x1 <= x0 || y1 <= y0; }
    int Width() const { return x1 - x0; }
    int Height() const { return y1 - y0; }
    bool Meets(const ScreenRect& o) const {
        return x0 < o.x1 && o.x0 < x1 && y0 < o.y1 && o.y0 < y1;
    }
    void Join(const ScreenRect& o) {
        if (o.IsEmpty()) return;
        if (IsEmpty()) {
            *this = o;
            return;
        }
        *this = {std::min(x0, o.x0), std::min(y0, o.y0), std::max(x1, o.x1), std::max(y1, o.y1)};
    }
    ScreenRect Grown(int across, int up, int width, int height) const {
        return {std::max(x0 - across, 0), std::max(y0 - up, 0), std::min(x1 + across, width),
                std::min(y1 + up, height)};
    }
};

/// A view's world, seen from a place in it, to clip space.
inline MMatrix ToClip(const M3dView& view, const MMatrix& toWorld) {
    MMatrix modelView, projection;
    view.modelViewMatrix(modelView);
    view.projectionMatrix(projection);
    return toWorld * modelView * projection;
}

/// How a view shows the coordinates of a surface.
struct ScreenProjection {
    /// To clip space, for rows.
    MMatrix toClip;
    int width = 1, height = 1;

    /// The pixels in which a box may be seen; all of them for one that reaches behind the camera,
    /// none for one that is out of the view.
    ScreenRect Of(const LPoint3& min, const LPoint3& max) const;
};

}  // namespace VantrelSDK
