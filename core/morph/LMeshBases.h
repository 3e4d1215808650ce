#pragma once

#include <vector>

#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

class LTopoCaches;

/// Frames on a surface, whose positions are this mesh's vertices, for vectors to be read in: a
/// vector in the frame of its place rides on the surface.
class LMeshBases : public LSubdivMesh {
  public:
    enum Direction { kTangentToObject = 0, kObjectToTangent = 1 };

    /// The frame at a corner of a face of a level, as a matrix that takes a vector in the present
    /// direction. Degenerated, which leaves a vector as it is, when there is none.
    virtual LMatrix3 GetVertexTM(int level, int face, int corner) const = 0;
    virtual void CopyBases(const LMeshBases* other);
    /// The frame at a vertex of a level: that of the first face that holds it.
    LMatrix3 FrameAt(int level, int vert) const;
    /// Takes a vector there through it.
    void TransformAt(int level, int vert, LPoint3& vector) const {
        FrameAt(level, vert).TransfromVector2(vector);
    }

    /// 0 takes vectors from tangent to object space, 1 the other way.
    void SetDirection(int direction) { fromTo_ = direction; }
    int GetDirection() const { return fromTo_; }
    /// The mesh that gave the levels, borrowed; may be null.
    const LSubdivMesh* GetBarySrc() const { return barysrc_; }

    /// The surface as a record, with the faces around its vertices. What is read has its direction
    /// and its UV channel still to be given.
    int WriteTo(LBlindData* stream) const override;
    using LSubdivMesh::ReadFrom;
    int ReadFrom(LBlindData* stream) override;

  protected:
    explicit LMeshBases(int fromTo) : fromTo_(fromTo) {}
    LMeshBases(const LMeshBases& other) = default;
    LMeshBases(const LSubdivMesh& src, int fromTo)
        : LSubdivMesh(src, false), barysrc_(&src), fromTo_(fromTo) {}

    const LSubdivMesh* barysrc_ = nullptr;
    int fromTo_;
};

/// Bases have a direction while this lives, and then their former one again. Null is left alone.
class BasesDirection {
  public:
    BasesDirection(LMeshBases* bases, int direction)
        : bases_(bases), former_(bases ? bases->GetDirection() : 0) {
        if (bases_) bases_->SetDirection(direction);
    }
    ~BasesDirection() {
        if (bases_) bases_->SetDirection(former_);
    }
    BasesDirection(const BasesDirection&) = delete;
    BasesDirection& operator=(const BasesDirection&) = delete;

  private:
    LMeshBases* bases_;
    int former_;
};

/// The right-handed frame of a corner from the surface and its UVs: N the vertex normal, larger
/// faces weighing more; T along the direction in which u grows on the face, made perpendicular to
/// N, or against it where the UVs are mirrored; B across both. All have length 1, so that a vector
/// keeps its length.
///
/// `at(v)` gives the position of vertex v; `around` are the faces around the corner's vertex.
/// Degenerated when the face has two corners at one place (or within 1e-5, the far ones within
/// 1e-4), or when normal and UVs give no direction.
template <class PositionAt>
LMatrix3 SurfaceFrame(const std::vector<LFace>& faces, std::span<const int> around, int face,
                      int corner, const LPoint2 (&uvs)[3], const PositionAt& at);

/// Frames by a UV channel.
class LMeshBasesUV2 : public LMeshBases {
  public:
    /// Copies `src` with all its levels. `uv` is borrowed.
    LMeshBasesUV2(const LSubdivMesh* src, const LUVSubdivChannel* uv, int fromTo);
    LMeshBasesUV2(const LMeshBasesUV2& other) = default;
    /// Without a surface.
    explicit LMeshBasesUV2(const LUVSubdivChannel* uv) : LMeshBases(0), uvsrc_(uv) {}

    LMatrix3 GetVertexTM(int level, int face, int corner) const override;
    void CopyBases(const LMeshBases* other) override;

    /// Takes new positions of level 0 and carries them to all levels: each by its own rule, so that
    /// what the caches of a step hold is held already.
    void Update(const LPoint3* level0);
    void Update(const LMesh& mesh) { Update(mesh.GetVertsPtr()); }
    void Update(const LPoint3* level0, const LUVSubdivChannel* uv) {
        uvsrc_ = uv;
        Update(level0);
    }
    /// Takes everything from `src`.
    void Update(const LSubdivMesh* src, const LUVSubdivChannel* uv);

    const LUVSubdivChannel* GetUVSrc() const { return uvsrc_; }
    void SetUVSrc(const LUVSubdivChannel* uv) { uvsrc_ = uv; }

  private:
    const LUVSubdivChannel* uvsrc_;
};

template <class PositionAt>
LMatrix3 SurfaceFrame(const std::vector<LFace>& faces, std::span<const int> around, int face,
                      int corner, const LPoint2 (&uvs)[3], const PositionAt& at) {
    const int* v = faces[face].v;
    const LPoint3 a = at(v[0]), b = at(v[1]), c = at(v[2]);
    if (a == b || b == c || c == a) return LMatrix3::Degenerated;
    const LPoint3 e1 = b - a, e2 = c - a;
    if (e1.Len() < 1e-5f || e2.Len() < 1e-5f || b.Equals(c, 1e-4f)) return LMatrix3::Degenerated;

    LPoint3 n;
    for (const int f : around) {
        const int* w = faces[f].v;
        const LPoint3 p = at(w[0]), q = at(w[1]), r = at(w[2]);
        if (p == q || q == r || r == p) continue;
        n += (q - p) ^ (r - p);
    }
    n.Normalize();
    const LPoint2 d1 = uvs[1] - uvs[0], d2 = uvs[2] - uvs[0];
    LPoint3 binormal = (e2 * d1.y - e1 * d2.y) ^ n;
    binormal.Normalize();
    LPoint3 tangent = binormal ^ n;
    tangent.Normalize();
    const float size = tangent.LenSq();
    if (!(size > 0.5f && size < 2)) return LMatrix3::Degenerated;
    return {{tangent, binormal, n, at(v[corner])}, false};
}

}  // namespace VantrelSDK
