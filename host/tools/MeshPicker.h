#pragma once

#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MPoint.h>

#include <set>
#include <vector>

namespace VantrelSDK {

/// Finds polygons of a mesh of the scene by rays of the world: those that a person points at. It
/// looks at all of them each time, so it is for meshes as they come, without levels.
class MeshPicker {
  public:
    struct Hit {
        int polygon = -1;
        /// From the ray's origin, in lengths of its direction.
        double distance = 0;
        MPoint point;
    };

    /// Takes the mesh as it is now, a shape below a transform.
    explicit MeshPicker(const MObject& shape);

    const MObject& shape() const { return shape_; }
    int numPolygons() const { return static_cast<int>(starts_.size()) - 1; }
    /// The first polygon on a ray, from either side. False where there is none.
    bool Pick(const MPoint& origin, const MVector& dir, Hit& hit) const;
    /// Adds the polygons that have a corner or their middle within a sphere and face the eye.
    void AddNear(const MPoint& center, double radius, const MVector& dir,
                 std::set<int>& polygons) const;

  private:
    MVector NormalOf(size_t polygon) const;

    MObject shape_;
    /// About the world.
    std::vector<MPoint> points_;
    std::vector<size_t> starts_{0}, corners_;
};

}  // namespace VantrelSDK
