#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/morph/SparseOffsets.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

class LMeshBasesUV2;
class LNode;
class LTopoCaches;

/// One stored shape: offsets of some vertices, over all levels by their absolute numbers, in the
/// space (tangent or object) that the node holds such targets in.
///
/// A target keeps the surface that it was made on, its skin, since a tangent offset says something
/// only there. A target that was set has offsets, if only a zero one.
class LMorphTarget {
  public:
    enum Kind { kStandard = 0, kPose = 1, kFlexor = 2, kMix = 3 };

    /// `owner` is borrowed and may be null; `level0nv` is the number of vertices of level 0.
    LMorphTarget(LNode* owner, std::string name, int level0nv)
        : owner_(owner), name_(std::move(name)), level0nv_(level0nv) {}
    virtual ~LMorphTarget() = default;

    virtual int GetKind() const { return kStandard; }
    LNode* owner() const { return owner_; }
    const std::string& GetName() const { return name_; }
    void SetName(std::string name) { name_ = std::move(name); }
    int GetLevel0Size() const { return level0nv_; }

    /// Set and not cleared since.
    bool HasXYZ() const { return !geom_.empty(); }
    /// How many vertices have an offset.
    size_t SizeGeom() const { return geom_.size(); }
    const SparseOffsets& geom() const { return geom_; }
    /// The target as level 0 shows it while the levels above are not used; see CreateProxyObj.
    const SparseOffsets& proxy() const { return proxy_; }
    /// The offset of a vertex, zero where there is none; or false there.
    LPoint3 MorphVector(int v) const;
    bool MorphVector(int v, LPoint3& offset) const;

    /// Takes the offsets of all levels of a delta mesh; without any, a zero one. False, and no
    /// change, for a mesh without vertices.
    bool CopyFromMesh(const LSubdivMesh* delta);
    /// Takes `count` offsets of vertices in order from 0 that are long enough to count: their
    /// square is at least cDeltaEpsilonSq.
    bool CopyFromMorph(const LPoint3* offsets, int count);
    void ClearGeom();

    /// Level-0 positions of the mesh that the target was made on; empty when it has no skin.
    const std::vector<LPoint3>& skin() const { return skin_; }
    void CopySkin(const LPoint3* verts, int count) { skin_.assign(verts, verts + count); }

    /// mesh[v] += offset * weight, for all vertices of the active level or for those below `limit`.
    /// Returns how many vertices were touched. The form with two meshes writes base plus offset for
    /// the vertices with one.
    int ApllyMorph(LMesh* mesh, float weight = 1, int limit = -1) const;
    int ApllyMorph(const LMesh* base, LMesh* out, int limit = -1) const;
    /// The same over the levels of a mesh by absolute number, `levels` of them (-1: all). When one
    /// is asked for and the mesh has more, the proxy serves.
    int ApplyToLevels(LSubdivMesh* mesh, int levels, float weight) const;
    /// mesh[v] -= offset.
    int SubstractFrom(LMesh* mesh) const { return ApllyMorph(mesh, -1); }
    /// Replaces all levels of a mesh by the target.
    void CopyToLevels(LSubdivMesh* mesh) const;

    /// The target gains the top level of `mesh`, a working delta mesh with the levels of the node,
    /// by interpolation without smoothing in the space that it is held in. `mesh` is left with the
    /// target's offsets.
    bool AddSubdivLevel(LSubdivMesh* mesh);
    /// The same through object space on the target's own skin, for a target in tangent space.
    /// False without a skin. `bases` gives the UV channel; null: the target is in object space.
    bool AddSubdivLevelOwnSkin(LSubdivMesh* mesh, const LSubdivMesh& geom,
                               const LMeshBasesUV2* bases);
    /// Drops the vertices from `nverts` on: the top level's first.
    void DeleteTopLevel(int nverts) { geom_.Truncate(nverts); }
    /// The twin of AddSubdivLevelOwnSkin: takes the top level of `mesh` from the target. Without a
    /// skin, DeleteTopLevel.
    bool DeleteTopLevelOwnSkin(LSubdivMesh* mesh, const LSubdivMesh& geom,
                               const LMeshBasesUV2* bases);

    /// Makes the proxy of a target in object space: its level 0.
    void CreateProxyObj();
    /// Of one in tangent space: through object space on the full surface and back on the low one.
    /// `mesh` gives the levels.
    void CreateProxyTang(LMeshBasesUV2* full, LMeshBasesUV2* low, const LSubdivMesh& mesh);

  private:
    /// The skin on all levels of `geom`, up to `levels` of them.
    std::unique_ptr<LSubdivMesh> SkinSurface(const LSubdivMesh& geom, int levels) const;

    LNode* owner_;
    std::string name_;
    int level0nv_;
    SparseOffsets geom_, proxy_;
    std::vector<LPoint3> skin_;
};

/// The shortest offset that a shape read from elsewhere keeps, squared.
inline constexpr float cDeltaEpsilonSq = 1e-09f;

}  // namespace VantrelSDK
