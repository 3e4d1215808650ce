#pragma once

#include <memory>
#include <vector>

#include "maya/MObject.h"
#include "maya/MPoint.h"
#include "maya/MPointArray.h"
#include "maya/MSpace.h"

namespace minihost {
class MeshData;
struct DeformInput;
}  // namespace minihost

/// Walks over the vertices of mesh data, or those that a deformer is to move, and moves them. Only
/// object space is served.
class MItGeometry {
  public:
    explicit MItGeometry(const MObject& mesh, MStatus* status = nullptr);
    /// Over `out`, of which the deformer's group has the vertices.
    MItGeometry(std::shared_ptr<minihost::MeshData> out, const minihost::DeformInput& in);

    bool isDone() const { return place_ >= count(); }
    MStatus next();
    MStatus reset();
    int count() const { return static_cast<int>(vertices_.size()); }
    int exactCount() const { return count(); }
    /// The vertex of the mesh, and its place in the walk.
    int index() const;
    int positionIndex() const { return place_; }
    MPoint position(MSpace::Space space = MSpace::kObject) const;
    MStatus setPosition(const MPoint& point, MSpace::Space space = MSpace::kObject);
    /// In the order of the walk.
    MStatus allPositions(MPointArray& points, MSpace::Space space = MSpace::kObject) const;
    MStatus setAllPositions(const MPointArray& points, MSpace::Space space = MSpace::kObject);

  private:
    std::shared_ptr<minihost::MeshData> mesh_;
    std::vector<int> vertices_;
    int place_ = 0;
};
