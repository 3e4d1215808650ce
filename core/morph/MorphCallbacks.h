#pragma once

#include "core/morph/SparseValues.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

class LMorphTarget;

/// What LMorphTarget::Traverse calls for the vertices that have a value.
class NodeCallback {
  public:
    virtual ~NodeCallback() = default;

    /// 0 walks the offsets, 1 the colours.
    virtual int type() const { return 0; }
    /// Walks the target's proxy in place of its offsets.
    virtual bool isproxy() const { return false; }
    /// True stops the walk.
    virtual bool proc(int vertex, LMorphTarget* target) = 0;
    /// Takes all offsets of vertices below `limit` in one go. False when it can't: then they come
    /// one by one.
    virtual bool procAll(const SparseOffsets&, int /*limit*/) { return false; }
};

/// Adds offset * weight to vertices below a limit, a run at a time. All callbacks of geometry are
/// this with other vertices, limits and weights; a copy is an addition to what was cleared.
///
/// With levels, absolute numbers count and the limit is the vertices of that many levels (-1: all).
/// A proxy form takes the proxy when level 0 alone is asked for and the mesh has more.
class VertsCallback : public NodeCallback {
  public:
    bool isproxy() const override { return proxy_; }
    bool proc(int vertex, LMorphTarget* target) override;
    bool procAll(const SparseOffsets& offsets, int limit) override;
    /// How many vertices were touched.
    int count() const { return count_; }

  protected:
    enum class Proxy { Never, AtLevel0 };

    /// The active level, or the whole of a mesh of one.
    VertsCallback(LMesh* mesh, float weight)
        : verts_(mesh->GetVertsPtr()), limit_(mesh->GetNumVerts()), weight_(weight) {}
    VertsCallback(LSubdivMesh* mesh, float weight, int levels, Proxy proxy);

    bool proxy_ = false;

  private:
    LPoint3* verts_;
    int limit_;
    float weight_;
    int count_ = 0;
};

struct ApplyToMeshCallback : VertsCallback {
    explicit ApplyToMeshCallback(LMesh* mesh) : VertsCallback(mesh, 1) {}
};

struct MultAndApplyToMeshClallback : VertsCallback {
    MultAndApplyToMeshClallback(LMesh* mesh, float weight) : VertsCallback(mesh, weight) {}
};

struct SubstructDeltaCallback : VertsCallback {
    explicit SubstructDeltaCallback(LMesh* mesh) : VertsCallback(mesh, -1) {}
};

struct CopyToMeshCallback : VertsCallback {
    explicit CopyToMeshCallback(LMesh* mesh) : VertsCallback(mesh, 1) { mesh->ClearVerts(); }
};

struct MultAndApplyToSudivMeshLvlsCallback : VertsCallback {
    MultAndApplyToSudivMeshLvlsCallback(LSubdivMesh* mesh, float weight, int levels)
        : VertsCallback(mesh, weight, levels, Proxy::Never) {}
};

struct MultAndApplyToSudivMeshProxyCallback : VertsCallback {
    MultAndApplyToSudivMeshProxyCallback(LSubdivMesh* mesh, float weight, int levels)
        : VertsCallback(mesh, weight, levels, Proxy::AtLevel0) {}
};

struct ApplyToSudivMeshLvlsCallback : VertsCallback {
    ApplyToSudivMeshLvlsCallback(LSubdivMesh* mesh, int levels)
        : VertsCallback(mesh, 1, levels, Proxy::Never) {}
};

struct ApplyToSudivMeshProxyCallback : VertsCallback {
    ApplyToSudivMeshProxyCallback(LSubdivMesh* mesh, int levels)
        : VertsCallback(mesh, 1, levels, Proxy::AtLevel0) {}
};

struct ApplyToSubdivMeshCallback : VertsCallback {
    explicit ApplyToSubdivMeshCallback(LSubdivMesh* mesh)
        : VertsCallback(mesh, 1, -1, Proxy::Never) {}
};

struct ApplyToSubdivMeshProxyCallback : VertsCallback {
    ApplyToSubdivMeshProxyCallback(LSubdivMesh* mesh, bool useProxy)
        : VertsCallback(mesh, 1, -1, Proxy::Never) {
        proxy_ = useProxy;
    }
};

struct CopyToSubdivMeshCallback : ApplyToSubdivMeshCallback {
    explicit CopyToSubdivMeshCallback(LSubdivMesh* mesh) : ApplyToSubdivMeshCallback(mesh) {
        mesh->ClearAllLevelsVerts();
    }
};

struct CopyToSubdivMeshLvlsCallback : ApplyToSudivMeshLvlsCallback {
    CopyToSubdivMeshLvlsCallback(LSubdivMesh* mesh, int levels)
        : ApplyToSudivMeshLvlsCallback(mesh, levels) {
        mesh->ClearAllLevelsVerts();
    }
};

struct CopyToSubdivMeshProxyCallback : ApplyToSudivMeshProxyCallback {
    CopyToSubdivMeshProxyCallback(LSubdivMesh* mesh, int levels)
        : ApplyToSudivMeshProxyCallback(mesh, levels) {
        mesh->ClearAllLevelsVerts();
    }
};

/// Writes base plus offset, for vertices that both meshes have.
class ApplyToMeshCallback2 : public NodeCallback {
  public:
    ApplyToMeshCallback2(const LMesh* base, LMesh* out) : base_(base), out_(out) {}
    bool proc(int vertex, LMorphTarget* target) override;
    int count() const { return count_; }

  private:
    const LMesh* base_;
    LMesh* out_;
    int count_ = 0;
};

/// Tags the vertices below a limit whose offset isn't zero.
class VertTagClallback : public NodeCallback {
  public:
    /// `tags`: one byte a vertex, `limit` of them.
    VertTagClallback(char* tags, int limit) : tags_(tags), limit_(limit) {}
    bool proc(int vertex, LMorphTarget* target) override;
    /// Something was tagged that had not been.
    bool HasTagged() const { return tagged_; }

  private:
    char* tags_;
    int limit_;
    bool tagged_ = false;
};

}  // namespace VantrelSDK
