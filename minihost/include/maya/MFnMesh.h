#pragma once

#include <functional>
#include <memory>
#include <string>

#include "maya/MColorArray.h"
#include "maya/MFloatArray.h"
#include "maya/MFloatPointArray.h"
#include "maya/MFnDagNode.h"
#include "maya/MIntArray.h"
#include "maya/MObjectArray.h"
#include "maya/MPointArray.h"
#include "maya/MSpace.h"
#include "maya/MStringArray.h"

namespace minihost {
class MeshData;
}  // namespace minihost

/// A mesh: mesh data, which is changed in place, or a mesh node. Of a node it reads what the node
/// shows; what it changes there is the node's own mesh, or where history feeds the node positions
/// alone, as tweaks. None of it is on the undo queue.
///
/// Polygons are numbered from 0, their corners locally from 0; UV ids and colour ids are numbers
/// into the tables of a set. A null set name means the current set. Positions are in the mesh's own
/// coordinates for every space but kWorld, which takes in the transforms above a node.
/// Numbers out of range fail with kInvalidParameter and change nothing.
class MFnMesh : public MFnDagNode {
  public:
    MFnMesh() = default;
    explicit MFnMesh(const MObject& mesh, MStatus* status = nullptr);
    /// Of a mesh, or a transform above one.
    explicit MFnMesh(const MDagPath& path, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kMesh; }

    /// Makes a mesh: in mesh data that MFnMeshData made, below a transform, or with a transform of
    /// its own (for a null object). Returns the data, the mesh node, or the new transform.
    /// `counts`: corners of each polygon; `connects`: their vertices one after another.
    MObject create(int numVertices, int numPolygons, const MFloatPointArray& points,
                   const MIntArray& counts, const MIntArray& connects,
                   MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);
    MObject create(int numVertices, int numPolygons, const MPointArray& points,
                   const MIntArray& counts, const MIntArray& connects,
                   MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);
    /// Replaces what the mesh is; names of sets stay, their contents go.
    MStatus createInPlace(int numVertices, int numPolygons, const MFloatPointArray& points,
                          const MIntArray& counts, const MIntArray& connects);
    MStatus createInPlace(int numVertices, int numPolygons, const MPointArray& points,
                          const MIntArray& counts, const MIntArray& connects);
    /// Makes a mesh that is a copy of another, where `create` would.
    MObject copy(const MObject& source, MObject parentOrOwner = MObject::kNullObj,
                 MStatus* status = nullptr);

    int numVertices(MStatus* status = nullptr) const;
    int numPolygons(MStatus* status = nullptr) const;
    int numFaceVertices(MStatus* status = nullptr) const;
    int numEdges(MStatus* status = nullptr) const;
    int polygonVertexCount(int polygon, MStatus* status = nullptr) const;
    MStatus getPolygonVertices(int polygon, MIntArray& vertices) const;
    MStatus getVertices(MIntArray& counts, MIntArray& connects) const;
    /// `triangles`: for each polygon how many; `vertices`: three for each, fans from first corners.
    MStatus getTriangles(MIntArray& triangles, MIntArray& vertices) const;

    MStatus getPoint(int vertex, MPoint& point, MSpace::Space space = MSpace::kObject) const;
    MStatus setPoint(int vertex, const MPoint& point, MSpace::Space space = MSpace::kObject);
    MStatus getPoints(MPointArray& points, MSpace::Space space = MSpace::kObject) const;
    MStatus getPoints(MFloatPointArray& points, MSpace::Space space = MSpace::kObject) const;
    MStatus setPoints(const MPointArray& points, MSpace::Space space = MSpace::kObject);
    MStatus setPoints(const MFloatPointArray& points, MSpace::Space space = MSpace::kObject);
    /// 3 numbers a vertex, valid until the mesh changes. Null without a mesh.
    const float* getRawPoints(MStatus* status = nullptr) const;

    int numUVSets(MStatus* status = nullptr) const;
    MStatus getUVSetNames(MStringArray& names) const;
    MString currentUVSetName(MStatus* status = nullptr) const;
    MStatus setCurrentUVSetName(const MString& name);
    /// Fails with kFailure where the name is taken.
    MStatus createUVSetWithName(const MString& name);
    MStatus deleteUVSet(const MString& name);
    int numUVs(const MString* set = nullptr, MStatus* status = nullptr) const;
    MStatus getUVs(MFloatArray& u, MFloatArray& v, const MString* set = nullptr) const;
    MStatus getUV(int id, float& u, float& v, const MString* set = nullptr) const;
    /// Replaces the table; corners whose UV is no longer there lose it.
    MStatus setUVs(const MFloatArray& u, const MFloatArray& v, const MString* set = nullptr);
    MStatus setUV(int id, float u, float v, const MString* set = nullptr);
    MStatus clearUVs(const MString* set = nullptr);
    /// `counts`: for each polygon its corners, or 0; `ids` one after another.
    MStatus getAssignedUVs(MIntArray& counts, MIntArray& ids, const MString* set = nullptr) const;
    MStatus assignUVs(const MIntArray& counts, const MIntArray& ids, const MString* set = nullptr);
    MStatus assignUV(int polygon, int corner, int id, const MString* set = nullptr);
    MStatus getPolygonUVid(int polygon, int corner, int& id, const MString* set = nullptr) const;

    int numColorSets(MStatus* status = nullptr) const;
    MStatus getColorSetNames(MStringArray& names) const;
    MString currentColorSetName(MStatus* status = nullptr) const;
    MStatus setCurrentColorSetName(const MString& name);
    /// The first one becomes the current one. `name` is made to be the name it got, which has a
    /// number behind where it was taken.
    MStatus createColorSetWithName(MString& name);
    MStatus deleteColorSet(const MString& name);
    int numColors(const MString* set = nullptr, MStatus* status = nullptr) const;
    /// The table. setColors fails where there is no colour set.
    MStatus setColors(const MColorArray& colors, const MString* set = nullptr);
    MStatus getColors(MColorArray& colors, const MString* set = nullptr) const;
    MStatus assignColor(int polygon, int corner, int id, const MString* set = nullptr);
    /// `ids`: one for each corner of the mesh.
    MStatus assignColors(const MIntArray& ids, const MString* set = nullptr);
    /// Of all corners at each vertex, in the current set, made where there is none.
    MStatus setVertexColors(const MColorArray& colors, const MIntArray& vertices);
    MStatus setVertexColor(const MColor& color, int vertex);
    MStatus setFaceColor(const MColor& color, int polygon);
    /// One for each vertex, the mean of its corners' that have one; `unset` where none has.
    MStatus getVertexColors(MColorArray& colors, const MString* set = nullptr,
                            const MColor* unset = nullptr) const;
    /// One for each corner.
    MStatus getFaceVertexColors(MColorArray& colors, const MString* set = nullptr,
                                const MColor* unset = nullptr) const;
    /// Of a node: whether colours are shown.
    MStatus setDisplayColors(bool enable);
    bool displayColors(MStatus* status = nullptr) const;

    /// Of a node: the shading groups it is assigned to, and for each polygon a number into them, -1
    /// for none. `instance` is 0.
    MStatus getConnectedShaders(unsigned instance, MObjectArray& shaders, MIntArray& indices) const;
    /// Tells a node that data of it was changed, where a function set could not.
    MStatus updateSurface();

  private:
    using Data = minihost::MeshData;
    std::shared_ptr<const Data> Read(MStatus* status = nullptr) const;
    MStatus Edit(const std::function<MStatus(Data&)>& change);
    minihost::Node* Shape() const;
    /// Makes a set the current one, in the data or by the attribute of a node.
    MStatus SetCurrent(const char* attribute, std::string Data::*current, const MString& name);
    /// Whether it is a node whose points come from elsewhere.
    bool IsFed() const;
    MStatus SetTweaks(const Data& shown, const MPointArray& points);
    template <class Points>
    MStatus SetOwnPoints(const Points& points);
    template <class Points>
    MObject Create(const Points& points, int numVertices, int numPolygons, const MIntArray& counts,
                   const MIntArray& connects, const MObject& owner, MStatus* status);
    template <class Points>
    MStatus Replace(const Points& points, int numVertices, int numPolygons, const MIntArray& counts,
                    const MIntArray& connects);
    MObject Put(const std::shared_ptr<Data>& mesh, const MObject& owner, MStatus* status);
    MMatrix ToSpace(MSpace::Space space) const;
};
