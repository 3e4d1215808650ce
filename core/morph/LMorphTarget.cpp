#include "core/morph/LMorphTarget.h"

#include <algorithm>
#include <climits>

#include "core/morph/LMeshBases.h"
#include "core/morph/MorphCallbacks.h"
#include "core/morph/SkinFrames.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

LMorphTarget::LMorphTarget(const LMorphTarget& other)
    : owner_(other.owner_),
      name_(other.name_),
      backcolor_(other.backcolor_),
      isdefback_(other.isdefback_),
      image_(other.image_),
      level0nv_(other.level0nv_),
      geom_(other.geom_),
      proxy_(other.proxy_),
      colors_(other.colors_),
      skin_(other.skin_) {
    for (const auto& joint : other.joints_) {
        joints_.push_back(other.newJoint());
        *joints_.back() = *joint;
    }
}

void LMorphTarget::SetGeom(SparseOffsets geom, SparseOffsets proxy) {
    geom_ = std::move(geom);
    proxy_ = std::move(proxy);
}

LPoint3 LMorphTarget::MorphVector(int v) const {
    const LPoint3* offset = geom_.Find(v);
    return offset ? *offset : LPoint3::Zero;
}

bool LMorphTarget::MorphVector(int v, LPoint3& offset) const {
    const LPoint3* found = geom_.Find(v);
    if (found) offset = *found;
    return found != nullptr;
}

LAColor LMorphTarget::MorphColor(int v) const {
    const LAColor* color = colors_.Find(v);
    return color ? *color : LAColor();
}

bool LMorphTarget::MorphColor(int v, LAColor& color) const {
    const LAColor* found = colors_.Find(v);
    if (found) color = *found;
    return found != nullptr;
}

void LMorphTarget::Traverse(NodeCallback* callback, bool limited, int limit) {
    const int end = limited && limit >= 0 ? limit : INT_MAX;
    const auto one = [&](int v, const auto&) { return callback->proc(v, this); };
    if (callback->type() == 1) {
        colors_.ForEach(end, one);
        return;
    }
    const SparseOffsets& offsets = callback->isproxy() ? proxy_ : geom_;
    const int last = callback->isproxy() ? INT_MAX : end;
    if (!callback->procAll(offsets, last)) offsets.ForEach(last, one);
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

void LMorphTarget::Clear() {
    ClearGeom();
    ClearColor();
}

bool LMorphTarget::CopyFromDelta(LMeshBasesUV2* bases) {
    if (!owner_ || !owner_->CopyFromDelta(this, bases)) return false;
    int count = 0;
    if (const LPoint3* input = owner_->lobject() ? owner_->lobject()->GetInput(count) : nullptr)
        CopySkin(input, count);
    return true;
}

bool LMorphTarget::CopyToDelta() {
    return owner_ && owner_->CopyToDelta(this);
}

bool LMorphTarget::CopyToDelta(LMeshBasesUV2* bases) {
    return owner_ && owner_->CopyToDelta(this, bases);
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

int LMorphTarget::ApplyToLevels(LSubdivMesh* mesh, int levels, float weight) {
    MultAndApplyToSudivMeshProxyCallback callback(mesh, weight, levels);
    Traverse(&callback);
    return callback.count();
}

void LMorphTarget::CopyToLevels(LSubdivMesh* mesh) {
    CopyToSubdivMeshCallback callback(mesh);
    Traverse(&callback);
}

namespace {

/// Fills the vertices that the top level adds from those below.
void InterpolateTop(LSubdivMesh& mesh) {
    const ISubdivLayer* top = mesh.GetSubdivs().GetTop();
    if (top) top->rule()->Interpolate(mesh.GetAllVertsPtr(), top->GetFirstVert());
}

}  // namespace

bool LMorphTarget::AddSubdivLevel(LSubdivMesh* mesh) {
    if (!HasXYZ()) return true;
    CopyToLevels(mesh);
    InterpolateTop(*mesh);
    return CopyFromMesh(mesh);
}

bool LMorphTarget::AddSubdivLevelOwnSkin(LSubdivMesh* mesh, SkinFrames* below, SkinFrames* above) {
    if (skin_.empty()) return false;
    if (!below || !above || !HasXYZ()) return AddSubdivLevel(mesh);
    CopyToLevels(mesh);
    below->Transform(*mesh, skin_, LMeshBases::kTangentToObject);
    InterpolateTop(*mesh);
    above->Transform(*mesh, skin_, LMeshBases::kObjectToTangent);
    return CopyFromMesh(mesh);
}

void LMorphTarget::DeleteTopLevel(int nverts) {
    geom_.Truncate(nverts);
    colors_.Truncate(nverts);
}

void LMorphTarget::DeleteTopLevelOwnSkin(int nverts, SkinFrames* below, SkinFrames* above) {
    const bool throughObject = !skin_.empty() && below && above && HasXYZ();
    if (!throughObject) return DeleteTopLevel(nverts);
    Transform(*above, LMeshBases::kTangentToObject);
    DeleteTopLevel(nverts);
    if (geom_.empty()) geom_.AssignPlaceholder(nverts);
    Transform(*below, LMeshBases::kObjectToTangent);
}

void LMorphTarget::Transform(SkinFrames& frames, int direction) {
    frames.On(skin_);
    geom_.Transform([&](int v, LPoint3 offset) {
        frames.TransformAt(direction, v, offset);
        return offset;
    });
    CreateProxyObj();
}

void LMorphTarget::CreateProxyObj() {
    proxy_.Clear();
    geom_.ForEach(level0nv_, [&](int v, const LPoint3& offset) {
        if (!(offset == LPoint3::Zero)) proxy_.Append(v, offset);
        return false;
    });
    proxy_.Pad(level0nv_);
}

void LMorphTarget::CreateProxyTang(LMeshBasesUV2* full, LMeshBasesUV2* low) {
    CreateProxyObj();
    const BasesDirection out(full, LMeshBases::kTangentToObject);
    const BasesDirection in(low, LMeshBases::kObjectToTangent);
    const int fullTop = full->GetNumSubivLevels() - 1, lowTop = low->GetNumSubivLevels() - 1;
    proxy_.Transform([&](int v, LPoint3 offset) {
        full->TransformAt(fullTop, v, offset);
        low->TransformAt(lowTop, v, offset);
        return offset;
    });
}

}  // namespace VantrelSDK
