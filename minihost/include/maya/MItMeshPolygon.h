#pragma once

#include "maya/MDagPath.h"
#include "maya/MFloatArray.h"
#include "maya/MIntArray.h"
#include "maya/MObject.h"
#include "maya/MPointArray.h"
#include "maya/MSpace.h"
#include "maya/MString.h"
#include "minihost/mesh/MeshWalk.h"

/// Walks over the polygons of a mesh (data or node), or those of a component, as they were when the
/// walk began. Corners are told by their place in the polygon. A null set name means the current
/// set. Only object space is served.
class MItMeshPolygon : public minihost::MeshWalk {
  public:
    explicit MItMeshPolygon(const MObject& mesh, MStatus* status = nullptr);
    MItMeshPolygon(const MObject& mesh, const MObject& component, MStatus* status = nullptr);
    explicit MItMeshPolygon(const MDagPath& mesh, const MObject& component = MObject::kNullObj,
                            MStatus* status = nullptr);

    unsigned polygonVertexCount(MStatus* status = nullptr) const;
    int vertexIndex(int corner, MStatus* status = nullptr) const;
    MStatus getVertices(MIntArray& vertices) const;
    void getPoints(MPointArray& points, MSpace::Space space = MSpace::kObject,
                   MStatus* status = nullptr) const;
    MPoint point(int corner, MSpace::Space space = MSpace::kObject,
                 MStatus* status = nullptr) const;

    MStatus numTriangles(int& count) const;
    /// A triangle of the fan from the first corner.
    MStatus getTriangle(int triangle, MPointArray& points, MIntArray& vertices,
                        MSpace::Space space = MSpace::kObject) const;
    MStatus getTriangles(MPointArray& points, MIntArray& vertices,
                         MSpace::Space space = MSpace::kObject) const;

    /// Whether every corner has a UV.
    bool hasUVs(MStatus* status = nullptr) const;
    bool hasUVs(const MString& set, MStatus* status = nullptr) const;
    MStatus getUVIndex(int corner, int& id, const MString* set = nullptr) const;
    MStatus getUVs(MFloatArray& u, MFloatArray& v, const MString* set = nullptr) const;
};
