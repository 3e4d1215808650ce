#include <algorithm>
#include <cstdlib>

#include "core/anim/LControlCollection.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/SkinFrames.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

bool LNode::SetTime(int ticks, int levels) {
    if (!lcurMorph_) return true;
    if (levels == -1) levels = lcurMorph_->GetOrigMesh()->GetNumSubivLevels();
    ltime_ = ticks;
    if (lblend_ && !getFullEvalForRecord()) return false;
    lcurMorph_->EvalDelta(ticks, -1, true, levels);
    if (lcolorDelta_) lcolorDelta_->EvalDelta(ticks, -1, true, true);
    ReopenSession();
    return true;
}

bool LNode::PlaysFrames() const {
    return std::ranges::any_of(frameTerms_, [](const LFrameTerm* term) { return term->Plays(); });
}

LControlCollection& LNode::NeedAnimControls() {
    if (!lcontrols_) {
        lcontrols_ = MakeAnimControls();
        frameTerms_.insert(frameTerms_.begin(), lcontrols_.get());
    }
    return *lcontrols_;
}

std::unique_ptr<LControlCollection> LNode::MakeAnimControls() {
    return std::make_unique<LControlCollection>(*this);
}

void LNode::Invalidate() {
    if (lcurMorph_) lcurMorph_->Invalidate();
    if (lcolorDelta_) lcolorDelta_->Invalidate();
}

void LNode::InitGroupBlend() {
    lblend_ = true;
    if (!lcurMorph_) return;
    lcurMorph_->EvalDelta(ltime_, -1, false, getNumRenderSubdivisionLevels() + 1);
    if (lcolorDelta_) lcolorDelta_->EvalDelta(ltime_, -1, false, true);
    ReopenSession();
}

void LNode::FinishGroupBlend() {
    lblend_ = false;
    if (lcurMorph_) lcurMorph_->Invalidate();
}

/// The delta was replaced by one in tangent space: an open session goes on with it.
void LNode::ReopenSession() {
    if (!lsculpt_) return;
    DeltaToObject();
    lcurMorph_->FlushUndo();
    if (lentryCache_) lentryCache_->CopyVerts(*lcurMorph_->GetOrigMesh());
    ProgressScope progress(getProgressCallbck());
    RestartLevel(progress, 0.2f);
}

bool LNode::ZeroDelta() {
    if (!lcurMorph_ || lstroke_) return false;
    lcurMorph_->ReplaceAll();
    ReopenSession();
    return true;
}

bool LNode::ZeroShortOffsets(float length) {
    if (!lcurMorph_ || lstroke_) return false;
    UpdateSubdivLevels();
    const InTangentSpace space(*this);
    LSubdivMesh& mesh = *lcurMorph_->GetOrigMesh();
    const int count = mesh.GetNumLevelVerts(mesh.GetNumSubivLevels() - 1);
    LPoint3* offsets = mesh.GetAllVertsPtr();
    for (int v = 0; v < count; ++v)
        if (offsets[v].LenSq() < length * length) offsets[v] = LPoint3::Zero;
    return true;
}

void LNode::calcMorph(int vertex, int, LPoint3& out) const {
    const bool known =
        lcurMorph_ && vertex >= 0 && vertex < lcurMorph_->GetOrigMesh()->GetNumVerts();
    out = known ? lcurMorph_->MorphVector(vertex) : LPoint3::Zero;
}

LPoint3* LNode::GetDeformation(int time, int& count) const {
    count = 0;
    const int nverts = lobject_ && HasTargets() ? lobject_->GetNumVerts() : 0;
    if (nverts == 0) return nullptr;
    auto* vectors = static_cast<LPoint3*>(std::malloc(sizeof(LPoint3) * nverts));
    if (!vectors) return nullptr;
    for (count = 0; count < nverts; ++count) calcMorph(count, time, vectors[count]);
    return vectors;
}

bool LNode::EvalMorph(const LMorphTarget* target, LMesh* out) const {
    if (!target || !out || !lobject_) return false;
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    if (out->GetNumVerts() != geom.GetNumVerts()) return false;
    target->ApllyMorph(&geom, out);
    return true;
}

bool LNode::EvalMorph(int index, LMesh* out) const {
    return EvalMorph(GetMorph(index), out);
}

bool LNode::CopyToDelta(LMorphTarget* target) {
    if (!target) return false;
    if (!lcurMorph_) return true;
    LSubdivMesh& mesh = *lcurMorph_->ReplaceAll();
    if (HasNeutral()) GetNeutral()->ApplyToLevels(&mesh, -1, 1);
    if (target != GetNeutral()) target->ApplyToLevels(&mesh, -1, 1);
    lcurMorph_->CacheDetails(false);
    ReopenSession();
    return true;
}

bool LNode::CopyToDelta(LMorphTarget* target, LMeshBasesUV2* bases) {
    if (!target) return false;
    if (!bases) return CopyToDelta(target);
    if (!lcurMorph_) return true;
    LSubdivMesh& mesh = *lcurMorph_->ReplaceAll();
    SkinFrames frames(*bases, bases->GetUVSrc(), -1, getObjSmoothIt(), lthGrp());
    const auto toObject = [&](LSubdivMesh& vectors) {
        frames.Transform(vectors, target->skin(), LMeshBases::kTangentToObject);
    };
    if (HasNeutral()) GetNeutral()->ApplyToLevels(&mesh, -1, 1);
    toObject(mesh);
    if (target != GetNeutral() && target->GetSpace() == kTangentSpace) {
        LSubdivMesh offsets(mesh, false);
        target->CopyToLevels(&offsets);
        toObject(offsets);
        mesh.AddAllVerts(offsets, 1);
    } else if (target != GetNeutral()) {
        target->ApplyToLevels(&mesh, -1, 1);
    }
    if (!lsculpt_) {
        frames.Transform(mesh, target->skin(), LMeshBases::kObjectToTangent);
        return true;
    }
    lcurMorph_->CacheDetails(false);
    ProgressScope progress(getProgressCallbck());
    RestartLevel(progress, 0.2f);
    return true;
}

int LNode::WantedSpace(const LMorphTarget& target) const {
    switch (target.GetKind()) {
        case LMorphTarget::kPose:
            return getPsdSpace();
        case LMorphTarget::kFlexor:
            return &target == GetNeutral() ? static_cast<int>(kTangentSpace) : getCsSpace();
        default:
            return target.GetSpace();
    }
}

bool LNode::CopyFromDelta(LMorphTarget* target, LMeshBasesUV2* bases) {
    if (!target) return false;
    if (!lcurMorph_) return true;
    if (bases && IsNeutralizing()) bases = neutralbases_.get();
    target->ClearGeom();
    UpdateSubdivLevels();
    LSubdivMesh offsets(*lcurMorph_->GetOrigMesh(), false);
    int space = lsculpt_ ? kObjectSpace : kTangentSpace;
    const auto goTo = [&](int wanted) {
        if (space == wanted) return;
        const BasesDirection heading(bases, wanted == kTangentSpace ? LMeshBases::kObjectToTangent
                                                                    : LMeshBases::kTangentToObject);
        offsets.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
        space = wanted;
    };
    // The neutral is in tangent space.
    if (target != GetNeutral() && HasNeutral()) {
        goTo(kTangentSpace);
        GetNeutral()->ApplyToLevels(&offsets, -1, -1);
    }
    const int wanted = WantedSpace(*target);
    goTo(wanted);
    target->CopyFromMesh(&offsets);
    if (auto* spaced = dynamic_cast<LSpacedTarget*>(target)) spaced->SetSpace(wanted);
    addProxy2target(target, wanted == kTangentSpace);
    return true;
}

bool LNode::StoreTarget(LMorphTarget* target) {
    return target && target->CopyFromDelta(GetDeltaBases());
}

bool LNode::LoadTarget(LMorphTarget* target) {
    return lsculpt_ ? CopyToDelta(target, GetDeltaBases()) : CopyToDelta(target);
}

bool LNode::MixWithDelta(LMixTarget* mix, LMeshBasesUV2* bases, float weight) {
    if (!mix || weight == 0) return false;
    if (!lcurMorph_) return true;
    if (bases && IsNeutralizing()) bases = neutralbases_.get();
    const bool tangent = mix->GetSpace() == kTangentSpace;
    const auto turn = [&](LSubdivMesh& vectors, int direction) {
        const BasesDirection heading(bases, direction);
        vectors.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
    };
    UpdateSubdivLevels();
    const LSubdivMesh& delta = *lcurMorph_->GetOrigMesh();
    LSubdivMesh neutral(delta, false), changed(delta, false);
    neutral.ClearAllVerts();
    if (HasNeutral()) GetNeutral()->ApplyToLevels(&neutral, -1, 1);
    if (lentryCache_) changed.AddAllVerts(*lentryCache_, -1);
    changed.ScaleAllVerts(1 / weight);
    if (lsculpt_ && tangent) turn(changed, LMeshBases::kObjectToTangent);
    if (!lsculpt_ && !tangent) turn(changed, LMeshBases::kTangentToObject);
    if (mix->HasXYZ()) mix->ApplyToLevels(&changed, -1, 1);
    if (lsculpt_) {
        if (!tangent) turn(neutral, LMeshBases::kTangentToObject);
        changed.AddAllVerts(neutral, -1);
    }
    mix->ClearGeom();
    mix->CopyFromMesh(&changed);
    addProxy2target(mix, tangent);
    // The entry is told without the neutral, as the next change is measured.
    lentryCache_ = std::make_unique<LSubdivMesh>(delta, false);
    if (tangent) turn(neutral, LMeshBases::kTangentToObject);
    lentryCache_->AddAllVerts(neutral, -1);
    return true;
}

LMorphTarget* LNode::BlendTarget(int index) const {
    if (index < GetNumMorphs()) return GetMorph(index);
    index -= GetNumMorphs();
    if (index < GetNumPoseMorphs()) return GetPoseMorph(index);
    return GetMixTarget(index - GetNumPoseMorphs());
}

/// Adds a target, read on its own skin, to vectors in object space.
void LNode::AddInObjectSpace(LMorphTarget& target, LSubdivMesh& vectors) const {
    LSubdivMesh offsets(vectors, false);
    target.CopyToLevels(&offsets);
    if (target.GetSpace() == kTangentSpace)
        SkinFrames(*lobject_->GetOrigGeom(), lobject_->GetActiveUVChannel(), -1, getObjSmoothIt(),
                   lthGrp())
            .Transform(offsets, target.skin(), LMeshBases::kTangentToObject);
    vectors.AddAllVerts(offsets, 1);
}

std::unique_ptr<LMesh> LNode::GetBlendTarg(int index, int space) const {
    if (!lobject_) return nullptr;
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    LMorphTarget* target = BlendTarget(index);
    LMeshBasesUV2* bases = GetDeltaBases();
    if (!target || !bases) return geom.GetActiveLevelCopy();
    if (space != kTangentSpace && space != kObjectSpace && target->GetKind() != LMorphTarget::kMix)
        return nullptr;
    LSubdivMesh shape(geom, false), offsets(geom, false);
    offsets.ClearAllVerts();
    if (HasNeutral()) GetNeutral()->ApplyToLevels(&offsets, -1, 1);
    if (target->GetKind() != LMorphTarget::kMix && space == kObjectSpace) {
        // The shape is the skin itself.
        SkinFrames onSkin(geom, bases->GetUVSrc(), -1, 0, lthGrp());
        shape.CopyVerts(onSkin.On(target->skin()));
        onSkin.Transform(offsets, target->skin(), LMeshBases::kTangentToObject);
    } else {
        const BasesDirection heading(bases, LMeshBases::kTangentToObject);
        const bool apart = target->GetKind() == LMorphTarget::kMix;
        if (!apart) target->ApplyToLevels(&offsets, -1, 1);
        offsets.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
        if (apart) AddInObjectSpace(*target, offsets);
    }
    shape.AddAllVerts(offsets, 1);
    return shape.GetActiveLevelCopy();
}

bool LNode::setBlendCache(int index) {
    blendIndex_ = index;
    SetBlendCache(GetBlendTarg(index, getBlendSpace()));
    return lblendCache_ != nullptr;
}

}  // namespace VantrelSDK
