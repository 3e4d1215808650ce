#include "core/mesh/LMesh2D.h"

#include <algorithm>
#include <new>

namespace VantrelSDK {

bool LMesh2D::Allocate(int nverts, int nfaces) try {
    verts_.assign(std::max(nverts, 0), LPoint2::Zero);
    faces_.assign(std::max(nfaces, 0), LFace());
    for (int f = 0; f < nfaces; ++f) faces_[f].id = f;
    return true;
} catch (const std::bad_alloc&) {
    LMesh2D::Free();
    return false;
}

void LMesh2D::Free() {
    verts_ = std::vector<LPoint2>();
    faces_ = std::vector<LFace>();
}

bool LMesh2D::CopyFrom(const LMesh2D* other) try {
    if (!other || other == this) return true;
    verts_ = other->verts_;
    faces_ = other->faces_;
    return true;
} catch (const std::bad_alloc&) {
    LMesh2D::Free();
    return false;
}

void LMesh2D::ClearVerts() {
    std::fill(verts_.begin(), verts_.end(), LPoint2::Zero);
}

LMesh2Ddirty::LMesh2Ddirty(int nverts, int nfaces, const LAdjFaceList* adjf) {
    if (LMesh2Ddirty::Allocate(nverts, nfaces)) adjf_ = adjf;
}

bool LMesh2Ddirty::Allocate(int nverts, int nfaces) {
    const bool done = LMesh2D::Allocate(nverts, nfaces);
    return StartClean() && done;
}

void LMesh2Ddirty::Free() {
    LMesh2D::Free();
    StartClean();
}

bool LMesh2Ddirty::CopyFrom(const LMesh2D* other) {
    if (!other || other == this) return true;
    const bool done = LMesh2D::CopyFrom(other);
    return StartClean() && done;
}

bool LMesh2Ddirty::StartClean() try {
    adjf_ = nullptr;
    dverts_.assign(verts_.size(), 0);
    dfaces_.assign(faces_.size(), 0);
    return true;
} catch (const std::bad_alloc&) {
    LMesh2D::Free();
    dverts_.clear();
    dfaces_.clear();
    return false;
}

void LMesh2Ddirty::OffsetVert(int i, const LPoint2& d) {
    if (!ValidVert(i)) return;
    verts_[i] += d;
    if (dverts_[i]) return;
    dverts_[i] = 1;
    if (!adjf_) return;
    for (const int f : adjf_->GetAdjFacesForVert(i))
        if (ValidFace(f)) dfaces_[f] = 1;
}

void LMesh2Ddirty::ClearDirty() {
    std::fill(dverts_.begin(), dverts_.end(), 0);
    std::fill(dfaces_.begin(), dfaces_.end(), 0);
}

}  // namespace VantrelSDK
