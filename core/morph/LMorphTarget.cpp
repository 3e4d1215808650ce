#include "core/morph/LMorphTarget.h"

#include <algorithm>
#include <climits>

#include "core/morph/LMeshBases.h"

namespace VantrelSDK {

LPoint3 LMorphTarget::MorphVector(int v) const {
    const LPoint3* offset = geom_.Find(v);
    return offset ? *offset : LPoint3::Zero;
}

bool LMorphTarget::MorphVector(int v, LPoint3& offset) const {
    const LPoint3* found = geom_.Find(v);
    if (found) offset = *found;
    return found != nullptr;
}

bool LMorphTarget::CopyFromMesh(const LSubdivMesh* delta) {
    if (!delta) return false;
    const int count = delta->GetNumLevelVerts(delta->GetNumSubivLevels() - 1);
    if (count == 0) return false;
    const LPoint3* offsets = delta->GetAllVertsPtr();
    geom_.Assign(offsets, count);
    proxy_.Assign(offsets, std::min(level0nv_, count));
    if (geom_.empty()) geom_.AssignPlaceholder(count);
    return true;
}

bool LMorphTarget::CopyFromMorph(const LPoint3* offsets, int count) {
    if (count <= 0) return false;
    std::vector<LPoint3> kept(offsets, offsets + count);
    for (LPoint3& offset : kept)
        if (!(offset.LenSq() >= cDeltaEpsilonSq)) offset = LPoint3::Zero;
    geom_.Assign(kept.data(), count);
    proxy_.Assign(kept.data(), std::min(level0nv_, count));
    if (geom_.empty()) geom_.AssignPlaceholder(count);
    return true;
}

void LMorphTarget::ClearGeom() {
    geom_.Clear();
    proxy_.Clear();
}

int LMorphTarget::ApllyMorph(LMesh* mesh, float weight, int limit) const {
    const int count = mesh->GetNumVerts();
    return geom_.AddTo(mesh->GetVertsPtr(), limit < 0 ? count : std::min(limit, count), weight);
}

int LMorphTarget::ApllyMorph(const LMesh* base, LMesh* out, int limit) const {
    const int count = std::min(base->GetNumVerts(), out->GetNumVerts());
    int touched = 0;
    geom_.ForEach(limit < 0 ? count : std::min(limit, count), [&](int v, const LPoint3& offset) {
        out->SetVert(v, base->GetVert(v) + offset);
        ++touched;
        return false;
    });
    return touched;
}

int LMorphTarget::ApplyToLevels(LSubdivMesh* mesh, int levels, float weight) const {
    const int all = mesh->GetNumSubivLevels();
    const int count = levels < 0 ? all : std::min(levels, all);
    if (count == 0) return 0;
    const SparseOffsets& offsets = count == 1 && all > 1 ? proxy_ : geom_;
    return offsets.AddTo(mesh->GetAllVertsPtr(), mesh->GetNumLevelVerts(count - 1), weight);
}

void LMorphTarget::CopyToLevels(LSubdivMesh* mesh) const {
    mesh->ClearAllLevelsVerts();
    ApplyToLevels(mesh, INT_MAX, 1);
}

std::unique_ptr<LSubdivMesh> LMorphTarget::SkinSurface(const LSubdivMesh& geom, int levels) const {
    auto surface = std::make_unique<LSubdivMesh>(*geom.GetLevelCopy(0));
    std::copy_n(skin_.begin(), std::min<size_t>(skin_.size(), surface->GetNumVerts()),
                surface->GetAllVertsPtr());
    while (surface->GetNumSubivLevels() < levels && surface->SubdivideLike(geom, true)) {
    }
    return surface;
}

namespace {

/// Fills the vertices that the top level adds from those below.
void InterpolateTop(LSubdivMesh& mesh) {
    const ISubdivLayer* top = mesh.GetSubdivs().GetTop();
    if (top) top->rule()->Interpolate(mesh.GetAllVertsPtr(), top->GetFirstVert());
}

void Transform(LSubdivMesh& mesh, const LSubdivMesh& surface, const LMeshBasesUV2& like,
               int direction, int level) {
    const LMeshBasesUV2 bases(&surface, like.GetUVSrc(), direction);
    mesh.TransformVectorsByLocal(&bases, nullptr, level);
}

}  // namespace

bool LMorphTarget::AddSubdivLevel(LSubdivMesh* mesh) {
    if (!HasXYZ()) return true;
    CopyToLevels(mesh);
    InterpolateTop(*mesh);
    return CopyFromMesh(mesh);
}

bool LMorphTarget::AddSubdivLevelOwnSkin(LSubdivMesh* mesh, const LSubdivMesh& geom,
                                         const LMeshBasesUV2* bases) {
    if (skin_.empty()) return false;
    if (!bases || !HasXYZ()) return AddSubdivLevel(mesh);
    const int top = mesh->GetNumSubivLevels() - 1;
    CopyToLevels(mesh);
    Transform(*mesh, *SkinSurface(geom, top), *bases, LMeshBases::kTangentToObject, top - 1);
    InterpolateTop(*mesh);
    Transform(*mesh, *SkinSurface(geom, top + 1), *bases, LMeshBases::kObjectToTangent, top);
    return CopyFromMesh(mesh);
}

bool LMorphTarget::DeleteTopLevelOwnSkin(LSubdivMesh* mesh, const LSubdivMesh& geom,
                                         const LMeshBasesUV2* bases) {
    const int top = mesh->GetNumSubivLevels() - 1;
    if (top < 1) return false;
    if (skin_.empty() || !bases || !HasXYZ()) {
        DeleteTopLevel(mesh->GetNumLevelVerts(top - 1));
        return true;
    }
    CopyToLevels(mesh);
    Transform(*mesh, *SkinSurface(geom, top + 1), *bases, LMeshBases::kTangentToObject, top);
    mesh->DeleteTopLevel();
    Transform(*mesh, *SkinSurface(geom, top), *bases, LMeshBases::kObjectToTangent, top - 1);
    return CopyFromMesh(mesh);
}

void LMorphTarget::CreateProxyObj() {
    std::vector<LPoint3> level0(level0nv_);
    geom_.AddTo(level0.data(), level0nv_, 1);
    proxy_.Assign(level0.data(), level0nv_);
}

void LMorphTarget::CreateProxyTang(LMeshBasesUV2* full, LMeshBasesUV2* low,
                                   const LSubdivMesh& mesh) {
    LSubdivMesh offsets(mesh, false);
    CopyToLevels(&offsets);
    const int fullDirection = full->GetDirection(), lowDirection = low->GetDirection();
    full->SetDirection(LMeshBases::kTangentToObject);
    low->SetDirection(LMeshBases::kObjectToTangent);
    offsets.TransformVectorsByLocal(full, nullptr, -1);
    while (offsets.DeleteTopLevel()) {
    }
    offsets.TransformVectorsByLocal(low, nullptr, 0);
    full->SetDirection(fullDirection);
    low->SetDirection(lowDirection);
    proxy_.Assign(offsets.GetAllVertsPtr(), level0nv_);
}

}  // namespace VantrelSDK
