#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/math/LMatrix3.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LMeshTopology.h"

namespace VantrelSDK {

class LBlindData;

/// A flat triangle mesh: positions (object units) and faces.
///
/// Copies of a mesh share its topology (see LMeshTopology); SetFace and GetFacesPtr give the mesh a
/// topology of its own first. An index out of range reads as LPoint3::Zero or ZeroFace and writes
/// nothing.
class LMesh {
  public:
    LMesh() = default;
    LMesh(int nverts, int nfaces) { Allocate(nverts, nfaces); }
    /// `verts` has at least topology->GetNumVerts() entries; the mesh takes that many.
    LMesh(std::shared_ptr<const LMeshTopology> topology, std::span<const LPoint3> verts);
    LMesh(const LMesh&) = default;
    LMesh& operator=(const LMesh&) = default;
    virtual ~LMesh() = default;

    /// True for a composition of several meshes, whose numbers run through all of them.
    virtual bool IsComposition() const { return false; }
    /// Gives the mesh these counts, all zero. False, and an empty mesh, without memory.
    virtual bool Allocate(int nverts, int nfaces);
    virtual void Free();
    virtual int GetNumVerts() const { return nverts_; }
    virtual int GetNumFaces() const { return topology_ ? topology_->GetNumFaces() : 0; }
    virtual LPoint3 GetVert(int i) const { return ValidVert(i) ? verts_[i] : LPoint3::Zero; }
    virtual LFace GetFace(int i) const { return ValidFace(i) ? topology_->Faces()[i] : ZeroFace; }
    virtual void SetVert(int i, const LPoint3& p) {
        if (ValidVert(i)) verts_[i] = p;
    }
    virtual void SetVert(int i, const float* p) { SetVert(i, LPoint3(p[0], p[1], p[2])); }
    virtual void SetFace(int i, const LFace& face);
    virtual void CopyFrom(const LMesh* other);
    virtual void ClearVerts();
    /// GetNumVerts() positions; null for an empty mesh.
    virtual LPoint3* GetVertsPtr() { return verts_.data(); }
    virtual const LPoint3* GetVertsPtr() const { return verts_.data(); }
    /// GetNumFaces() faces of the mesh's own; the tables of a shared topology are left behind.
    virtual LFace* GetFacesPtr();
    virtual void OffsetVert(int i, const LPoint3& d) {
        if (ValidVert(i)) verts_[i] += d;
    }
    /// Appends the faces around vertex i, by a scan of all faces.
    virtual void GetAdjFacesForVertex(int i, std::vector<LFace>& faces) const;
    /// The unit normal (b - a) ^ (c - b); zero without such a face.
    virtual LPoint3 GetFaceNormal(int i) const;
    /// The normalised sum of the unnormalised cross products around vertex i; scans all faces.
    virtual LPoint3 GetVertNormal(int i) const;
    /// The box of all vertices, after `tm` when it is given. False for an empty mesh.
    virtual bool CalcBBox(LPoint3& min, LPoint3& max, const LMatrix3* tm = nullptr) const;
    /// Takes each vertex through the frame of the first face, in face order, that touches it.
    /// `tms` has one matrix a face.
    virtual void TransformByLocal(const LMatrix3* tms);
    virtual void TransformVectorsByLocal(const LMatrix3* tms);
    /// Fills one frame a face, see calcTM.
    virtual void CalcLocalTMs(LMatrix3* tms) const;
    /// The mesh as a record. Both return one of LBlindData's codes; a failed reading leaves the
    /// mesh as it was. Old forms are read too; faces take their place as their number.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);

    /// What the mesh shares with its copies; null while empty.
    const std::shared_ptr<const LMeshTopology>& Topology() const { return topology_; }
    /// The faces, by number.
    std::span<const LFace> Faces() const;

    /// The frame of one triangle: X = b - a, Y = c - a, Z the unit normal, translation a. X and Y
    /// keep the triangle's shape. False, and the identity, when b or c equals a.
    bool calcTM(const LFace& face, LMatrix3& tm) const;
    /// As above, with Z the normalised mean of the cross products of the non-degenerate faces
    /// around corner 0.
    bool calcTM(const LFace& face, const LAdjFaceList& adjacency, LMatrix3& tm) const;

  protected:
    bool ValidVert(int i) const { return i >= 0 && i < nverts_; }
    bool ValidFace(int i) const { return i >= 0 && topology_ && i < topology_->GetNumFaces(); }

    /// Vertices of this mesh; verts_ may hold more (the levels above, see LSubdivMesh).
    int nverts_ = 0;
    std::vector<LPoint3> verts_;
    std::shared_ptr<const LMeshTopology> topology_;

  private:
    template <class Apply>
    void ForEachVertOnce(const LMatrix3* tms, Apply apply);
};

}  // namespace VantrelSDK
