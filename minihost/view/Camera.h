#pragma once

#include <span>

#include "maya/MBoundingBox.h"
#include "maya/MMatrix.h"
#include "minihost/dag/DagNode.h"

namespace minihost {

/// A camera of the scene as a view of some size sees through it: along -z of its place, +y up. The
/// film's width fills the view's.
class Camera {
  public:
    /// A camera shape, or the transform above one. Borrowed.
    explicit Camera(DagNode& node);

    /// World to camera, and camera to clip space (-1 to 1 on all axes), for rows.
    MMatrix ModelView() const;
    MMatrix Projection(int width, int height) const;

    /// Moves the camera, along the way that it looks, so that points of the world fit into a view
    /// of such a size, and brings its clipping planes and its width in line. Nothing without
    /// points.
    void Frame(std::span<const MPoint> points, int width, int height);

    // What a person does with it. The middle is the point ahead of it that it turns about, at its
    // "centerOfInterest".
    /// Turns it about the middle, in radians to the left and up; a camera without perspective
    /// stays.
    void Tumble(double left, double up);
    /// Shifts it and the middle, so that what lies there moves by a share of the view's width.
    void Track(double right, double up);
    /// Brings it to a share of its distance from the middle, above 0.
    void Dolly(double share);

  private:
    /// Places the eye, in world coordinates.
    void MoveTo(const MPoint& eye);
    double Number(const char* attribute) const;
    void SetNumber(const char* attribute, double value);

    DagNode& shape_;
};

}  // namespace minihost
