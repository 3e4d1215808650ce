#pragma once

#include <maya/MPxLocatorNode.h>

#include "host/ml/MLNode.h"

namespace VantrelSDK {

/// The brush as it is seen: an outline where the transform above it stands. How it looks is one for
/// all locators, as there is one tool: in world space, set by the tool as the pointer moves.
class KelmoToolLocator : public MPxLocatorNode {
  public:
    /// Values of `brushShape`: faces the view, or lies on the surface.
    enum Shape { kFacesView, kLiesOnSurface, kSphere };

    static void* creator() { return new KelmoToolLocator; }
    static MStatus initialize();
    static void release() { visibility2 = brushShape = MObject(); }

    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
              M3dView::DisplayStatus status) override;

    /// From the eye into the scene.
    static void setViewDir(const MVector& dir);
    /// The surface's normal, of any length but 0.
    static void setNormDir(const MVector& dir) { norm_ = dir.normal(); }
    /// The view's vertical; points down.
    static void setUpDir(const MVector& dir);
    static void setRadius(double radius) { brush_.radius = radius; }
    static double getRadius() { return brush_.radius; }
    static const BrushView& brush() { return brush_; }

    /// Crosses: in pixels at the cursor, and of a tenth of the radius.
    static inline bool smallCross = false, smallCross2 = false;
    static inline short cursorx = 0, cursory = 0;
    /// Where the clone's source is, whether it is being set, and how far the cursor was from it.
    static inline int doSetClone = 0;
    static inline short cursor0x = 0, cursor0y = 0, offsetx = 0, offsety = 0;

    static MObject visibility2, brushShape;

  private:
    int Number(const MObject& attribute) const;
    static void SetColor();
    static void drawRing(const MVector& x, const MVector& y);
    static void drawViewAlignedCircle();
    static void drawPlanar();
    static void drawSphere();
    static void drawCross();
    static void drawSmallCross(const M3dView& view);

    static inline BrushView brush_;
    static inline MVector up_{0, -1, 0}, norm_{0, 0, 1};
};

}  // namespace VantrelSDK
