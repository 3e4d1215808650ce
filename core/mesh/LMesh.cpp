#include "core/mesh/LMesh.h"

#include <algorithm>
#include <new>

namespace VantrelSDK {

LMesh::LMesh(std::shared_ptr<const LMeshTopology> topology, std::span<const LPoint3> verts)
    : nverts_(topology->GetNumVerts()),
      verts_(verts.begin(), verts.begin() + topology->GetNumVerts()),
      topology_(std::move(topology)) {}

bool LMesh::Allocate(int nverts, int nfaces) try {
    nverts = std::max(nverts, 0);
    nfaces = std::max(nfaces, 0);
    verts_.assign(nverts, LPoint3::Zero);
    std::vector<LFace> faces(nfaces);
    for (int f = 0; f < nfaces; ++f) faces[f].id = f;
    topology_ = std::make_shared<LMeshTopology>(nverts, std::move(faces));
    nverts_ = nverts;
    return true;
} catch (const std::bad_alloc&) {
    LMesh::Free();
    return false;
}

void LMesh::Free() {
    nverts_ = 0;
    verts_ = std::vector<LPoint3>();
    topology_.reset();
}

void LMesh::SetFace(int i, const LFace& face) {
    if (ValidFace(i)) GetFacesPtr()[i] = face;
}

void LMesh::CopyFrom(const LMesh* other) {
    if (!other || other == this) return;
    nverts_ = other->nverts_;
    verts_.assign(other->verts_.begin(), other->verts_.begin() + other->nverts_);
    topology_ = other->topology_;
}

void LMesh::ClearVerts() {
    std::fill(verts_.begin(), verts_.end(), LPoint3::Zero);
}

LFace* LMesh::GetFacesPtr() {
    if (!topology_) return nullptr;
    if (topology_.use_count() > 1)
        topology_ = std::make_shared<LMeshTopology>(nverts_, topology_->Faces());
    return std::const_pointer_cast<LMeshTopology>(topology_)->EditFaces();
}

std::span<const LFace> LMesh::Faces() const {
    return topology_ ? std::span<const LFace>(topology_->Faces()) : std::span<const LFace>();
}

void LMesh::GetAdjFacesForVertex(int i, std::vector<LFace>& faces) const {
    for (const LFace& face : Faces())
        if (face.CornerOf(i) >= 0) faces.push_back(face);
}

LPoint3 LMesh::GetFaceNormal(int i) const {
    if (!ValidFace(i)) return LPoint3::Zero;
    const LFace face = LMesh::GetFace(i);
    const LPoint3 a = LMesh::GetVert(face.v[0]), b = LMesh::GetVert(face.v[1]),
                  c = LMesh::GetVert(face.v[2]);
    return Normalized((b - a) ^ (c - b));
}

LPoint3 LMesh::GetVertNormal(int i) const {
    LPoint3 sum;
    for (const LFace& face : Faces()) {
        if (face.CornerOf(i) < 0) continue;
        const LPoint3 a = LMesh::GetVert(face.v[0]), b = LMesh::GetVert(face.v[1]),
                      c = LMesh::GetVert(face.v[2]);
        sum += (b - a) ^ (c - b);
    }
    return Normalized(sum);
}

bool LMesh::CalcBBox(LPoint3& min, LPoint3& max, const LMatrix3* tm) const {
    if (nverts_ == 0) return false;
    for (int i = 0; i < nverts_; ++i) {
        const LPoint3 p = tm ? tm->TransfromPoint(verts_[i]) : verts_[i];
        if (i == 0) min = max = p;
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    return true;
}

template <class Apply>
void LMesh::ForEachVertOnce(const LMatrix3* tms, Apply apply) {
    std::vector<char> done(nverts_);
    const std::span<const LFace> faces = Faces();
    for (size_t f = 0; f < faces.size(); ++f)
        for (const int v : faces[f].v)
            if (ValidVert(v) && !done[v]) {
                done[v] = 1;
                apply(tms[f], verts_[v]);
            }
}

void LMesh::TransformByLocal(const LMatrix3* tms) {
    ForEachVertOnce(tms, [](const LMatrix3& tm, LPoint3& p) { tm.TransfromPoint2(p); });
}

void LMesh::TransformVectorsByLocal(const LMatrix3* tms) {
    ForEachVertOnce(tms, [](const LMatrix3& tm, LPoint3& p) { tm.TransfromVector2(p); });
}

void LMesh::CalcLocalTMs(LMatrix3* tms) const {
    const std::span<const LFace> faces = Faces();
    for (size_t f = 0; f < faces.size(); ++f) calcTM(faces[f], tms[f]);
}

bool LMesh::calcTM(const LFace& face, LMatrix3& tm) const {
    const LPoint3 a = LMesh::GetVert(face.v[0]);
    const LPoint3 x = LMesh::GetVert(face.v[1]) - a, y = LMesh::GetVert(face.v[2]) - a;
    tm = LMatrix3::Identity;
    if (x == LPoint3::Zero || y == LPoint3::Zero) return false;
    tm[0] = x;
    tm[1] = y;
    tm[2] = Normalized(x ^ y);
    tm[3] = a;
    return true;
}

bool LMesh::calcTM(const LFace& face, const LAdjFaceList& adjacency, LMatrix3& tm) const {
    if (!calcTM(face, tm)) return false;
    const std::span<const int> around = adjacency.GetAdjFacesForVert(face.v[0]);
    if (around.empty()) {
        tm[2] = tm[0] ^ tm[1];
        return true;
    }
    LPoint3 sum;
    for (const int f : around) {
        const LFace other = LMesh::GetFace(f);
        const LPoint3 a = LMesh::GetVert(other.v[0]), b = LMesh::GetVert(other.v[1]),
                      c = LMesh::GetVert(other.v[2]);
        if (a == b || b == c || c == a) continue;
        sum += (b - a) ^ (c - a);
    }
    if (sum == LPoint3::Zero)
        tm = LMatrix3::Identity;
    else
        tm[2] = Normalized(sum);
    return true;
}

}  // namespace VantrelSDK
