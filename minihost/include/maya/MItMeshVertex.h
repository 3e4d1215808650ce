#pragma once

#include "maya/MColor.h"
#include "maya/MDagPath.h"
#include "maya/MIntArray.h"
#include "maya/MObject.h"
#include "maya/MPoint.h"
#include "maya/MSpace.h"
#include "maya/MString.h"
#include "minihost/mesh/MeshWalk.h"

/// Walks over the vertices of a mesh (data or node), or those of a component, as they were when the
/// walk began. Only object space is served.
class MItMeshVertex : public minihost::MeshWalk {
  public:
    explicit MItMeshVertex(const MObject& mesh, MStatus* status = nullptr);
    MItMeshVertex(const MObject& mesh, const MObject& component, MStatus* status = nullptr);
    explicit MItMeshVertex(const MDagPath& mesh, const MObject& component = MObject::kNullObj,
                           MStatus* status = nullptr);

    MPoint position(MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    /// Whether a corner at the vertex has a colour in the current set; getColor takes their mean.
    bool hasColor() const;
    MStatus getColor(MColor& color, const MString* set = nullptr) const;
    MStatus getConnectedFaces(MIntArray& polygons) const;

  private:
    /// The corners of the mesh at this vertex, from `first` up to `end`.
    void FindCorners(int& first, int& end) const;

    /// Corners by vertex, made at first need: those of vertex v from starts_[v] up to starts_[v+1].
    mutable std::vector<int> starts_, corners_;
};
