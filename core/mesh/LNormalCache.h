#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LIndexCache.h"
#include "core/mesh/LMesh.h"

namespace VantrelSDK {

class LThreadGroup;

/// Face and vertex normals of a mesh, with marks of what has changed, so that CalcChanged brings
/// just those up to date. A vertex normal is the unit vector along the sum of the unit normals of
/// its faces: unlike LMesh::GetVertNormal it does not count large faces for more.
///
/// Marking is done by one thread; the normals are made on the worker group, and do not depend on
/// the number of workers.
class LNormalCache {
  public:
    /// Both are borrowed and may be null; with a mesh, Init has been called.
    explicit LNormalCache(LMesh* mesh = nullptr, LThreadGroup* workers = nullptr);
    virtual ~LNormalCache() = default;
    LNormalCache(const LNormalCache&) = delete;
    LNormalCache& operator=(const LNormalCache&) = delete;

    /// Binds the cache to a mesh (borrowed; the active level, where it has levels) and sizes it;
    /// all normals are zero. Needed anew when faces or the level change, not when vertices move.
    /// False, and a cache of nothing, without memory; so too for null.
    bool Init(LMesh* mesh);
    /// The normals of the marked faces and, with `verts`, of the marked vertices, from the face
    /// normals around them, marked or not. The marks stay.
    void CalcChanged(bool verts);
    void CalcAll();
    /// Forgets the marks.
    void Clear();

    /// Marks one; nothing for a number out of range.
    void SetVertChanged(int v) {
        if (v >= 0 && v < nverts_) vidxcache_.Add(v);
    }
    void SetFaceChanged(int f) {
        if (f >= 0 && f < nfaces_) fidxcache_.Add(f);
    }
    /// Marks what turns when these vertices move: the faces around them and the corners of those.
    void SetVertsMoved(std::span<const int> verts);
    /// What is marked.
    const LIndexCache& fidxcache() const { return fidxcache_; }
    const LIndexCache& vidxcache() const { return vidxcache_; }

    LMesh* object() const { return object_; }
    int nverts() const { return nverts_; }
    int nfaces() const { return nfaces_; }
    /// By vertex and by face; zero for a number out of range, and where there is no area.
    LPoint3 GetVNormal(int v) const {
        return static_cast<unsigned>(v) < vnormals_.size() ? vnormals_[v] : LPoint3::Zero;
    }
    LPoint3 GetFNormal(int f) const { return f >= 0 && f < nfaces_ ? fnormals_[f] : LPoint3::Zero; }
    /// The faces around each vertex; null for a cache of nothing.
    const LAdjFaceList* adjfaces() const { return topology_ ? &topology_->AdjFaces() : nullptr; }

  private:
    /// Calls job(first, last) over 0..count-1, on the workers when there are some.
    template <class Job>
    void Run(int count, const Job& job);
    /// For the faces and vertices at(0) to at(count - 1).
    template <class At>
    void CalcFaceNormals(int count, const At& at);
    template <class At>
    void CalcVertNormals(int count, const At& at);

    LMesh* object_ = nullptr;
    LThreadGroup* workers_;
    int nverts_ = 0, nfaces_ = 0;
    std::shared_ptr<const LMeshTopology> topology_;
    /// nfaces_ + 1: the last is loaded as four floats.
    std::vector<LPoint3> fnormals_;
    std::vector<LPoint3> vnormals_;
    LIndexCache fidxcache_, vidxcache_;
};

}  // namespace VantrelSDK
