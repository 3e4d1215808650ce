#pragma once

#include <cstdint>
#include <vector>

#include "core/math/LPoint2.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// A flat triangle mesh in the plane, the twin of LMesh: the vertices and faces of a UV channel.
///
/// Has faces of its own, since UV vertices part at seams where those of the surface don't. An index
/// out of range reads as LPoint2::Zero or ZeroFace and writes nothing.
class LMesh2D {
  public:
    LMesh2D() = default;
    LMesh2D(int nverts, int nfaces) { LMesh2D::Allocate(nverts, nfaces); }
    LMesh2D(const LMesh2D&) = default;
    LMesh2D& operator=(const LMesh2D&) = default;
    virtual ~LMesh2D() = default;

    /// Gives the mesh these counts, all zero. False, and an empty mesh, without memory.
    virtual bool Allocate(int nverts, int nfaces);
    virtual void Free();
    virtual int GetNumVerts() const { return static_cast<int>(verts_.size()); }
    virtual int GetNumFaces() const { return static_cast<int>(faces_.size()); }
    virtual LPoint2 GetVert(int i) const { return ValidVert(i) ? verts_[i] : LPoint2::Zero; }
    virtual LFace GetFace(int i) const { return ValidFace(i) ? faces_[i] : ZeroFace; }
    virtual void SetVert(int i, const LPoint2& p) {
        if (ValidVert(i)) verts_[i] = p;
    }
    virtual void SetVert(int i, const float* p) { SetVert(i, LPoint2(p[0], p[1])); }
    virtual void SetFace(int i, const LFace& face) {
        if (ValidFace(i)) faces_[i] = face;
    }
    /// Takes vertices and faces; null takes nothing. False, and an empty mesh, without memory.
    virtual bool CopyFrom(const LMesh2D* other);
    virtual void ClearVerts();
    /// GetNumVerts() points; null for an empty mesh. Valid until the counts change.
    virtual LPoint2* GetVertsPtr() { return verts_.data(); }
    virtual const LPoint2* GetVertsPtr() const { return verts_.data(); }
    /// GetNumFaces() faces; otherwise the same.
    virtual LFace* GetFacesPtr() { return faces_.data(); }
    virtual const LFace* GetFacesPtr() const { return faces_.data(); }
    virtual void OffsetVert(int i, const LPoint2& d) {
        if (ValidVert(i)) verts_[i] += d;
    }

  protected:
    bool ValidVert(int i) const { return static_cast<unsigned>(i) < verts_.size(); }
    bool ValidFace(int i) const { return static_cast<unsigned>(i) < faces_.size(); }

    std::vector<LPoint2> verts_;
    std::vector<LFace> faces_;
};

/// Also remembers which vertices have been offset, and the faces around them: a byte each, 1 for
/// dirty.
class LMesh2Ddirty : public LMesh2D {
  public:
    LMesh2Ddirty() = default;
    /// `adjf` as for SetAdjFaces.
    LMesh2Ddirty(int nverts, int nfaces, const LAdjFaceList* adjf = nullptr);

    /// These three make everything clean and forget `adjf`: it belongs to the former faces.
    bool Allocate(int nverts, int nfaces) override;
    void Free() override;
    bool CopyFrom(const LMesh2D* other) override;
    /// Adds d. A vertex that is dirty already costs no walk around it.
    void OffsetVert(int i, const LPoint2& d) override;

    /// The faces around each vertex (borrowed), made anew by the caller after an edit of the faces;
    /// null: no face gets dirty.
    void SetAdjFaces(const LAdjFaceList* adjf) { adjf_ = adjf; }
    const LAdjFaceList* adjf() const { return adjf_; }
    /// A byte a vertex and a byte a face.
    const std::vector<uint8_t>& dverts() const { return dverts_; }
    const std::vector<uint8_t>& dfaces() const { return dfaces_; }
    /// Makes everything clean.
    void ClearDirty();

  private:
    /// Marks of the present counts, all clean.
    bool StartClean();

    std::vector<uint8_t> dverts_, dfaces_;
    const LAdjFaceList* adjf_ = nullptr;
};

}  // namespace VantrelSDK
