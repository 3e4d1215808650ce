#pragma once

#include <maya/MObject.h>

#include <memory>
#include <set>
#include <vector>

#include "core/mesh/LMeshObject.h"

namespace VantrelSDK {

class LevelPolygons;
class MLNode;

/// New mesh data with all that a mesh of the host has.
MObject CopyMesh(const MObject& mesh);

/// A mesh object whose geometry comes from a mesh of the host and goes out into others.
class MLMeshObject : public LMeshObject {
  public:
    explicit MLMeshObject(MLNode* owner);
    /// Stays empty for what is no mesh.
    MLMeshObject(MLNode* owner, const MObject& mesh);
    ~MLMeshObject() override;

    std::unique_ptr<LProgressCallback> getProgressCallbck() override;

    /// Takes a mesh of as many vertices as the new base shape, with the levels of the delta up to
    /// `level` (-1: all), and UV sets that are new. `changed` is set when a vertex moved; without
    /// that, and with those levels, nothing is done. False, with nothing changed, for another mesh.
    bool Update(bool& changed, const MObject& mesh, int level);
    using LMeshObject::Update;
    /// Notes which faces each polygon has, unless that is known.
    void StorePoly2Faces(const MObject& mesh);
    bool HasPoly2Faces() const { return !poly2faces_.empty(); }
    int GetNumPolys() const { return static_cast<int>(poly2faces_.size()) - 1; }
    /// The first face of polygon p; p may be the number of polygons.
    int GetFirstFace(int p) const { return poly2faces_[static_cast<size_t>(p)]; }
    /// A channel for each UV set of the mesh that has none yet.
    void AddNewUVSets(const MObject& mesh);
    void SetUVSets(const MObject& mesh);

    /// Selects the faces of polygons of the base, and those around vertices; no others.
    void SelectPolygons(const std::set<int>& polygons, const std::set<int>& vertices);
    /// Reads from the mesh that a node feeds which shading group each polygon has, unless that is
    /// known; ClearMtlIds has it read again. Nothing is known where the mesh has other polygons.
    void UpdateMtlIds(const MObject& node);

    /// New mesh data of a level: polygons, UV sets and groups, with the positions of `shape`, a
    /// geometry with the levels of this one. At level 0 all but positions are those of `input`, the
    /// host's mesh. Null when it can't be made.
    MObject Export(const MObject& input, int level, const LSubdivMesh& shape);
    /// The same of a level above 0, without groups.
    MObject ExportLevel(int level, const LSubdivMesh& shape) const;

  private:
    /// What was exported last, to be copied while level, polygons and groups stay.
    struct Exported {
        int level = -1;
        std::shared_ptr<const LMeshTopology> topology;
        size_t groups = 0;
        MObject mesh;
    };

    void CarryGroups(const MObject& input, const MObject& output, const LevelPolygons& polygons);

    std::vector<int> poly2faces_;
    Exported exported_;
};

}  // namespace VantrelSDK
