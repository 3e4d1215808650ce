#include <cstdlib>

#include "core/morph/LMeshBases.h"
#include "core/morph/SkinFrames.h"
#include "core/sculpt/LNode.h"
#include "core/sculpt/StrokeListener.h"

namespace VantrelSDK {

/// Adds vectors in tangent space to what the targets hold that the neutral is under. A target in
/// object space takes them as they lie on its own skin.
void LNode::ShiftTargets(const LSubdivMesh& shift) {
    SkinFrames frames(*lobject_->GetOrigGeom(), lobject_->GetActiveUVChannel(), -1,
                      getObjSmoothIt(), lthGrp());
    for (LMorphTarget* target : AllTargets()) {
        if (target == GetNeutral() || target->GetKind() == LMorphTarget::kMix || !target->HasXYZ())
            continue;
        LSubdivMesh offsets(shift, false);
        const bool tangent = target->GetSpace() == kTangentSpace;
        if (!tangent) frames.Transform(offsets, target->skin(), LMeshBases::kTangentToObject);
        target->ApplyToLevels(&offsets, -1, 1);
        target->CopyFromMesh(&offsets);
        addProxy2target(target, tangent);
    }
}

bool LNode::createNeutral() {
    LFlexorTarget* neutral = GetNeutral();
    if (!lobject_ || !lcurMorph_ || !neutral || lstroke_) return false;
    UpdateSubdivLevels();
    LMeshBasesUV2* bases = lsculpt_ ? GetDeltaBases() : nullptr;
    const BasesDirection heading(bases, LMeshBases::kObjectToTangent);
    // What the neutral loses, the targets gain.
    LSubdivMesh shift(*lcurMorph_->GetOrigMesh(), false);
    shift.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
    shift.InverseAllVerts();
    neutral->ApplyToLevels(&shift, -1, 1);
    ShiftTargets(shift);
    if (!neutral->CopyFromDelta(bases)) return false;
    lcurMorph_->Invalidate();
    RenewProxies();
    UpdateNeutralShape();
    if (listener_) listener_->NeutralMade();
    return true;
}

bool LNode::clearNeutral() {
    LFlexorTarget* neutral = GetNeutral();
    if (!lobject_ || !lcurMorph_ || !neutral || !(neutral->HasXYZ() || neutral->HasRGBA()))
        return false;
    LSubdivMesh shift(*lobject_->GetOrigGeom(), false);
    neutral->CopyToLevels(&shift);
    ShiftTargets(shift);
    neutral->Clear();
    lcurMorph_->Invalidate();
    if (listener_) listener_->NeutralCleared();
    return true;
}

bool LNode::CanNeutralize(std::string& why) const {
    if (!HasNeutral())
        why = "Kelmo: can't neutralize. Create NUTRAL first.";
    else if (!lobject_ || !lobject_->GetActiveUVChannel())
        why = "Kelmo: can't neutralize - no UVs.";
    else if (GetNeutral()->skin().empty())
        why = "Kelmo: can't neutralize - no neutral skin.";
    else if (const ISubdivLayer* top = lobject_->GetOrigGeom()->GetSubdivs().GetTop();
             (top ? top->GetType() : prefSubdivisionMethod) != 1)
        why = "Kelmo: can't neutralize - quad subdivisions required.";
    else
        return true;
    return false;
}

bool LNode::Neutralize(bool on, std::string& why) {
    if (lstroke_ || (on && !CanNeutralize(why))) return false;
    if (lsculpt_) DeltaToTangent();
    deleteAllLevelTrees();
    neutralbases_.reset();
    if (on) {
        neutralbases_ = std::make_unique<LMeshBasesUV2>(lobject_->GetActiveUVChannel());
        UpdateNeutralShape();
    }
    ReopenSession();
    return true;
}

LMatrix3* LNode::calcSkinTMs(const LMesh* post, const LMesh* pre) const {
    if (!lobject_ || !post) return nullptr;
    const std::unique_ptr<LMesh> level0 = lobject_->GetOrigGeom()->GetLevelCopy(0);
    if (!pre) pre = level0.get();
    const int count = level0->GetNumFaces();
    if (post->GetNumVerts() != level0->GetNumVerts() || post->GetNumFaces() != count ||
        pre->GetNumVerts() != level0->GetNumVerts() || pre->GetNumFaces() != count)
        return nullptr;
    auto* result = static_cast<LMatrix3*>(std::malloc(sizeof(LMatrix3) * count));
    if (!result) return nullptr;
    pre->CalcLocalTMs(result);
    for (int f = 0; f < count; ++f) result[f].Invert();
    const LMorphTarget* first = GetMorph(0);
    if (!first || !first->HasXYZ()) return result;
    LMesh moved(*post);
    first->ApllyMorph(&moved);
    std::vector<LMatrix3> frames(count), there(count);
    post->CalcLocalTMs(frames.data());
    moved.CalcLocalTMs(there.data());
    for (int f = 0; f < count; ++f) result[f] = GetInverse(there[f]) * frames[f] * result[f];
    return result;
}

/// The neutral's skin on the levels that there are.
void LNode::UpdateNeutralShape() {
    if (!neutralbases_ || !lobject_) return;
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    SkinFrames shape(geom, lobject_->GetActiveUVChannel(), -1, 0, lthGrp());
    neutralbases_->CopyBases(&shape.On(GetNeutral()->skin()));
    neutralbases_->SetActiveLevel(geom.GetActiveLevel());
}

}  // namespace VantrelSDK
