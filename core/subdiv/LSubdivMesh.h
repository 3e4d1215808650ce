#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/mesh/LFaceBarys.h"
#include "core/mesh/LMesh.h"
#include "core/subdiv/LSubdivCollection.h"
#include "core/subdiv/LSubdivLevel.h"
#include "core/subdiv/LSubdivMeshI.h"

namespace VantrelSDK {

class LEdgeListFlagged;
class LMeshBases;
class LQuadLevelTopoCache;
class LQuadSubdivision;
struct LQuadStep;
class LThreadGroup;
class RecordWriter;

/// A triangle mesh with all its subdivision levels in one numbering.
///
/// A vertex keeps its number on all levels above the one that made it and has one position only; a
/// level's vertices are the first ones of the absolute array, a level's faces a range of their own.
/// Serves as geometry (positions) and as delta (offsets). Plain accessors work on the active level;
/// the LMesh base holds level 0. Topology is shared with copies and with the delta of a geometry.
/// No locks: level operations are kept apart from vertex access by the caller.
class LSubdivMesh : public LMesh, public LSubdivMeshI {
  public:
    LSubdivMesh() : LSubdivMesh(0, 0) {}
    LSubdivMesh(int nverts, int nfaces);
    explicit LSubdivMesh(const LMesh& mesh);
    /// A deep copy of the vertices; barycentrics are left out unless `withBarys`.
    explicit LSubdivMesh(const LSubdivMesh& other, bool withBarys = true);
    LSubdivMesh& operator=(const LSubdivMesh&) = delete;

    bool IsComposition() const override { return false; }
    bool Allocate(int nverts, int nfaces) override;
    void Free() override;
    int GetNumVerts() const override { return GetNumLevelVerts(GetActiveLevel()); }
    int GetNumFaces() const override { return GetNumLevelFaces(GetActiveLevel()); }
    LPoint3 GetVert(int i) const override;
    LFace GetFace(int i) const override { return GetLevelFace(i, GetActiveLevel()); }
    void SetVert(int i, const LPoint3& p) override;
    using LMesh::SetVert;
    /// Level 0 only: the levels above follow from it.
    void SetFace(int i, const LFace& face) override;
    /// Replaces everything by a mesh of level 0 alone.
    void CopyFrom(const LMesh* other) override;
    /// Replaces everything by a copy, barycentrics included.
    void CopyFrom(const LSubdivMesh* other);
    /// Copies the values of all vertices from a mesh of the same topology.
    void CopyVerts(const LSubdivMesh& other);
    /// Adds those of such a mesh times `weight`; multiplies by `factor`.
    void AddAllVerts(const LSubdivMesh& other, float weight);
    void ScaleAllVerts(float factor);
    void ClearVerts() override;
    void OffsetVert(int i, const LPoint3& d) override;
    /// These four see level 0 only.
    LFace* GetFacesPtr() override { return LMesh::GetFacesPtr(); }
    void GetAdjFacesForVertex(int i, std::vector<LFace>& faces) const override {
        LMesh::GetAdjFacesForVertex(i, faces);
    }
    LPoint3 GetVertNormal(int i) const override { return LMesh::GetVertNormal(i); }
    bool CalcBBox(LPoint3& min, LPoint3& max, const LMatrix3* tm = nullptr) const override {
        return LMesh::CalcBBox(min, max, tm);
    }
    LPoint3 GetFaceNormal(int i) const override;

    void ClearAllVerts() override;
    void InverseAllVerts() override;
    /// A plain mesh of one level; faces are numbered from 0.
    std::unique_ptr<LMesh> GetActiveLevelCopy() const override;
    std::unique_ptr<LMesh> GetTopLevelCopy() const override;
    std::unique_ptr<LMesh> GetLevelCopy(unsigned level) const override;
    /// All faces and vertices of all levels, in absolute order.
    std::unique_ptr<LMesh> GetAllLevelsCopy() const;
    int GetNumSubivLevels() const override { return subdivs_->GetNumLayers(); }
    /// A level whose layer doesn't exist reads as level 0.
    int GetNumLevelVerts(unsigned level) const override;
    int GetNumLevelFaces(unsigned level) const override;
    LPoint3 GetLevelVert(unsigned i, unsigned level) const override;
    LFace GetLevelFace(unsigned i, unsigned level) const override;
    void OffsetLevelVert(int i, const LPoint3& d, int level) override;
    int GetActiveLevel() const override { return subdivs_->GetActiveIndex(); }
    /// False, and no change, for a level that doesn't exist.
    bool SetActiveLevel(unsigned level) override;
    bool ActivateUp() { return subdivs_->ActivateUp(); }
    bool ActivateDown() { return subdivs_->ActivateDown(); }
    int RemapVertFromGlobal(unsigned i) const override { return static_cast<int>(i); }
    int RemapFaceFromGlobal(unsigned i) const override;
    /// Set by writes through the active level; cleared by a change of level and by a subdivision.
    void SetLevelChangedFlag(bool changed) override { levelchanged_ = changed; }
    bool HasLevelChanged() const override { return levelchanged_; }
    /// Absolute access: past the top level's vertices the getter gives zero and the setters do
    /// nothing.
    void SetVertByAbsIdx(unsigned i, const LPoint3& p) override;
    LPoint3 GetVertByAbsIdx(unsigned i) const override;
    void OffsetVertByAbsIdx(unsigned i, const LPoint3& d) override;
    void ClearAllLevelsVerts() override;
    LFace GetFaceByAbsIdx(int i) const;
    /// The children of a face of any level; all -1 on the top level.
    LFaceSubs GetFaceSubsByAbsIdx(int i) const;

    LPoint3* GetAllVertsPtr() override { return verts_.data(); }
    const LPoint3* GetAllVertsPtr() const override { return verts_.data(); }
    std::shared_ptr<const LMeshTopology> GetLevelTopology(unsigned level) const override;
    /// The same without a share; null for a level that doesn't exist.
    const LMeshTopology* LevelTables(int level) const;
    const LSubdivCollection& GetSubdivs() const { return *subdivs_; }
    /// The tables of the step to a quad level; empty for a level of another kind or none.
    LQuadStep GetQuadStep(int level) const;
    /// Says of a level that was read how it was made. Call it before the level's rule is used.
    void SetLevelMade(int level, bool smooth, bool protectopen);

    /// Adds a level of four triangles a face, new vertices in the middle of edges, and moves all of
    /// its vertices by Loop's vertex mask when `smooth` (those on open edges stay when
    /// `protectopen`). The new level becomes active. False, and no change, without faces or memory,
    /// or when a count would pass 2^31 - 1.
    bool SubdivideAll_Loop(bool smooth, bool protectopen);
    /// The same with the topology made before, from faces of the present top level.
    bool SubdivideAll_Loop(const LSubdivLevelTopo& topo, bool smooth, bool protectopen);
    /// Adds a level of quads, each kept as two triangles (see LQuadSubdivision for the rule). The
    /// new level becomes active. `edges` are those of the top level (null: made here). False, and
    /// no change, without faces or memory, when a face names no vertex, or when a count would pass
    /// 2^31 - 1. `protectopen` takes no part: borders are kept always.
    bool SubdivideAll_Quad(bool smooth, bool protectopen, const LEdgeListFlagged* edges = nullptr);
    /// The same, and fills `cache` with what it takes to redo the step.
    bool SubdivideAll_Quad2(bool smooth, bool protectopen, LQuadLevelTopoCache* cache);
    /// Redoes the step from a cache that was filled over the same faces, touching vertices only.
    /// With a cache that nobody filled, SubdivideAll_Quad(true, true).
    bool RedivideAll_Quad(const LQuadLevelTopoCache* cache, bool smooth);
    /// How many faces a step to quads would give the next level.
    long long CountNextQuadLevelFaces() const;
    /// Adds the next level that `other`, a mesh over the same base, has above the levels of this
    /// one, sharing its topology; new vertices are interpolated, and smoothed as the level's rule
    /// says when `smooth`. The new level becomes active.
    bool SubdivideLike(const LSubdivMesh& other, bool smooth);
    /// Fills the vertices of all levels anew from those of level 0, by the rule of each level.
    /// `workers` may be null; the bits don't depend on their number.
    void RebuildLevels(LThreadGroup* workers = nullptr);
    /// Removes the top level; false without one.
    bool DeleteTopLevel();

    /// Numbers, on `layer`, of the sub-faces of a level-0 face, appended to `out`.
    void FindSubFaces(int face, std::vector<int>& out, const ISubdivLayer* layer) const;
    /// The same for a list of level-0 faces: at level 0 the list itself, past the top nothing.
    void FindSubFaces(const std::vector<int>& in, std::vector<int>& out, unsigned level) const;
    /// The top level's sub-faces of a level-0 face with the barycentrics of their corners.
    void FindSubFacesAndBary(int face, std::vector<int>& out, std::vector<LFaceBarys>& barys) const;

    /// Barycentrics: for each vertex of each level its weights in the corners of a level-0 face.
    /// They hold the parametric place and don't follow the vertices.
    void AllocBarys();
    void RecalcAllBarys();
    bool NeedBarys() const { return needbarys_; }
    /// Drops them, or promises to keep them from the next level on.
    void SetNeedBarys(bool need);
    /// GetNumVerts of the top level, or null. Shared with copies.
    std::shared_ptr<const std::vector<LPoint3>> GetBarys() const { return barys_; }
    LPoint3 GetBaryByAbsIdx(unsigned i) const;
    void SetBaryByAbsIdx(unsigned i, const LPoint3& bary);
    void CopyBarys(const LSubdivMesh& other);
    /// Takes off every vertex what smooth quad levels over `base` (null: this mesh's level 0) give
    /// it. Nothing unless the top is a quad level.
    void SubstructLevel0(const LMesh* base);
    /// Takes off every vertex above level 0 what the flat interpolation of level 0 gives it.
    /// Weights come from `other`'s barycentrics when it has them (null: computed).
    void SubstructLevel0ByBarys(const LSubdivMesh* other);

    /// One frame a level-0 face; all levels follow the frame of the first base face that reaches
    /// them.
    void TransformByLocal(const LMatrix3* tms) override { TransformByLocal(tms, false); }
    void TransformByLocal(const LMatrix3* tms, bool skipLevel0);
    void TransformVectorsByLocal(const LMatrix3* tms) override;

    /// Takes the vertices of `level` (-1: the top) as vectors through the frames of `bases` at that
    /// level: each once, by the frame at the first corner, in face order, that holds it. A frame
    /// that can't be formed leaves its vector. `src` has no effect; `workers` may be null.
    void TransformVectorsByLocal(const LMeshBases* bases, const LSubdivMesh* src, int level,
                                 LThreadGroup* workers = nullptr);

    /// Debug dumps as OBJ text; false when the file can't be written. Level -1 means the top.
    bool Mesh2wobj(const std::string& path, int level) const;
    /// Pairs of base point and base plus delta, as degenerate faces.
    bool Vec2wobj(const std::string& path, const LSubdivMesh& base) const;

    /// The mesh with all its levels as a record; see LMesh for the contract. Levels that are read
    /// are taken for smoothed ones, with open edges protected.
    int WriteTo(LBlindData* stream) const override;
    int ReadFrom(LBlindData* stream) override;
    /// Levels that `like` (null: none) has too share its topology.
    int ReadFrom(LBlindData* stream, const LSubdivMesh* like);

    /// Checks the promises of the numbering; empty when all hold, else what is broken.
    std::string Validate() const;

  private:
    int NumAllVerts() const { return GetNumLevelVerts(GetNumSubivLevels() - 1); }
    bool HasRoomFor(long long newVerts, long long newFaces) const;
    bool AddQuadLevel(const LQuadStep& step, bool smooth);
    bool FillTop(bool smooth);
    void BindNewVerts(int firstLevel);
    LFaceSubs ChildrenOf(int absFace, const ISubdivLayer& childLayer) const;
    void WriteExtFaces(RecordWriter& record) const;
    void WriteFaceSubs(RecordWriter& record, unsigned short tag, int from, int to) const;
    template <class Visit>
    void WalkSubFaces(int face, int depth, const ISubdivLayer* layer, Visit visit) const;
    template <class Visit>
    void WalkSubFacesAndBary(int face, const LFaceBarys& barys, int depth,
                             const ISubdivLayer* layer, Visit visit) const;
    void BindBelow(int face, const LFaceBarys& barys, int level, int firstVert,
                   std::vector<uint8_t>& done, std::vector<LPoint3>& bound) const;
    template <class Apply>
    void ForEachVertByBaseFace(bool skipLevel0, Apply apply);

    std::unique_ptr<LSubdivCollection> subdivs_;
    bool levelchanged_ = false;
    bool needbarys_ = false;
    /// By absolute number, like the vertices.
    std::shared_ptr<std::vector<LPoint3>> barys_;
};

}  // namespace VantrelSDK
