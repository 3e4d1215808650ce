#pragma once

#include <algorithm>
#include <cfloat>
#include <memory>
#include <span>
#include <vector>

#include "core/math/LColor.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LIndexCache.h"
#include "core/subdiv/LSubdivMeshI.h"

namespace VantrelSDK {

class LColorDelta;
class LNode;
class LThreadGroup;

/// The evaluated surface of one level as flat arrays: positions (object plus delta), face and
/// vertex normals, adjacency, colours and stencils. A stroke marks the vertices and faces that it
/// changes, and CalcChanged brings just those up to date.
///
/// Marking is done by one thread; the evaluation runs on the worker group in joined passes, each
/// worker with entries of its own. The result does not depend on the number of workers.
class LDisplayCache {
  public:
    /// Both are borrowed and may be null.
    explicit LDisplayCache(LNode* owner, LThreadGroup* workers = nullptr);
    virtual ~LDisplayCache() = default;

    /// Binds the cache to the active level of these (borrowed) and sizes it. CalcAll fills it.
    virtual void Init(LSubdivMeshI* object, LSubdivMeshI* delta);
    /// Forgets what is marked. When a draw has consumed the dirty box, the box of this step moves
    /// to place 1 and place 0 starts empty.
    virtual void Clear(bool);
    /// Evaluates what is marked: positions, face normals and, with `vertNormals`, vertex normals.
    virtual void CalcChanged(bool vertNormals);
    virtual void CalcAll();
    /// Marks a vertex; nothing outside 0..nverts-1.
    virtual void SetVertChanged(int v);
    virtual void SetFaceChanged(int f);
    virtual void SetColor(int v, const LColor& colour);
    virtual void SetStencil(int v, float stencil);
    virtual void InvalidateVoxels() {}
    /// These vertices have taken other colours or stencils, and stay where they are.
    virtual void ColorsTaken(std::span<const int>) {}

    /// Marks faces and vertices found by one search (no number twice). The cheap way to mark many.
    void SetChanged(std::span<const int> faces, std::span<const int> verts,
                    std::span<const int> moreVerts = {});
    /// Marks what depends on the positions of these vertices: themselves, the faces around them and
    /// the corners of those.
    void SetVertsMoved(std::span<const int> verts);

    /// Freezes the vertex normals as they are, for GetPushPullVNormal during a stroke. Costs what
    /// changed since the last call.
    void CachePushPullNormas();
    const LPoint3& GetPushPullVNormal(int v) const { return vnormalsPP_[v]; }

    LNode* owner() const { return owner_; }
    LSubdivMeshI* object() const { return object_; }
    LSubdivMeshI* delta() const { return delta_; }
    int level() const { return level_; }
    int GetNumVerts() const { return nverts_; }
    int GetNumFaces() const { return nfaces_; }
    int vcounter() const { return static_cast<int>(changedVerts_.Items().size()); }
    int fcounter() const { return static_cast<int>(changedFaces_.Items().size()); }
    const LPoint3& GetVertex(int v) const { return verts_[v]; }
    const LPoint3& GetVNormal(int v) const { return vnormals_[v]; }
    const LPoint3& GetFNormal(int f) const { return fnormals_[f]; }
    /// All of them, by vertex or face.
    std::span<const LPoint3> verts() const { return {verts_.data(), size_t(nverts_)}; }
    std::span<const LPoint3> vnormals() const { return vnormals_; }
    std::span<const LPoint3> fnormals() const { return {fnormals_.data(), size_t(nfaces_)}; }
    const LAdjFaceList* GetAdjFaceList() const {
        return topology_ ? &topology_->AdjFaces() : nullptr;
    }
    const LAdjVertList* GetAdjVertList() const {
        return topology_ ? &topology_->AdjVerts() : nullptr;
    }
    const std::shared_ptr<const LMeshTopology>& Topology() const { return topology_; }

    /// Where colours and stencils come from (borrowed, of the object's levels; null for nowhere).
    void SetColorDelta(const LColorDelta* delta) { colordelta_ = delta; }
    const LColorDelta* colordelta() const { return colordelta_; }
    /// Vertex colours exist after SetUseColor(true): what the colour delta shows, white without.
    void SetUseColor(bool use);
    bool useColors() const { return !colors_.empty(); }
    /// Stencils come with the first one that is painted.
    bool HasStencils() const { return !stencils_.empty(); }
    void FillColor(const LColor& colour);
    /// As they are where nothing was painted.
    void ClearColor();
    /// Takes colours, or stencils, of these vertices anew from the colour delta, and adds where
    /// they are to the dirty box. All of them are made first where there are none yet.
    void TakeColors(std::span<const int> verts);
    void TakeStencils(std::span<const int> verts);
    /// Takes all that there are anew; positions and normals stay.
    void TakeAllColors();
    LColor GetColor(int v) const;
    float GetStencil(int v) const;

    /// Box 0: what changed since the last Clear; box 1: the step before. False when empty.
    bool GetDirtyBox(int i, LPoint3& min, LPoint3& max) const;
    void ClearDirtyBoxes();
    void SetDirtyBoxDrawn() { dirtyBoxDrawn_ = true; }

  protected:
    /// Inside out while empty.
    struct DirtyBox {
        LPoint3 min{FLT_MAX, FLT_MAX, FLT_MAX}, max{-FLT_MAX, -FLT_MAX, -FLT_MAX};

        bool IsEmpty() const { return min.x > max.x; }
        void Add(const LPoint3& p) {
            min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
            max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
        }
        void Add(const DirtyBox& box) {
            if (box.IsEmpty()) return;
            Add(box.min);
            Add(box.max);
        }
    };

    /// Calls job(first, last, worker) over 0..count-1, on the workers when there are some.
    template <class Job>
    void Run(size_t count, const Job& job);
    void CalcVerts(std::span<const int> verts);
    void CalcFaceNormals(std::span<const int> faces);
    void CalcVertNormals(std::span<const int> verts);
    void AllColors();
    void AllStencils();
    template <class Take>
    void TakeListed(std::span<const int> verts, const Take& take);
    template <class FaceAt>
    void FillFaceNormals(int first, int last, const FaceAt& faceAt);
    template <class VertAt>
    void FillVertNormals(int first, int last, const VertAt& vertAt);

    LNode* owner_;
    LThreadGroup* workers_;
    LSubdivMeshI* object_ = nullptr;
    LSubdivMeshI* delta_ = nullptr;
    const LColorDelta* colordelta_ = nullptr;
    int level_ = -1;
    int nverts_ = 0, nfaces_ = 0;
    std::shared_ptr<const LMeshTopology> topology_;
    std::vector<LPoint3> verts_, vnormals_, fnormals_;
    /// The frozen normals; differ from vnormals_ at most in unfrozen_.
    std::vector<LPoint3> vnormalsPP_;
    LIndexCache unfrozen_;
    LIndexCache changedVerts_, changedFaces_;
    std::vector<LColor> colors_;
    std::vector<float> stencils_;
    DirtyBox dirtyBox_[2];
    bool dirtyBoxDrawn_ = false;
    /// One per worker, kept between steps.
    std::vector<DirtyBox> workerBoxes_;
    std::vector<std::vector<int>> workerLists_;
};

}  // namespace VantrelSDK
