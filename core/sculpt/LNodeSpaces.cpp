#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>
#include <utility>

#include "core/morph/LMeshBases.h"
#include "core/morph/SkinFrames.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

void Say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

}  // namespace

LMeshBasesUV2* LNode::GetDeltaBases() const {
    if (IsNeutralizing()) return neutralbases_.get();
    return lobject_ ? lobject_->GetBases() : nullptr;
}

/// Tells surfaces apart, bit for bit.
size_t LNode::SurfaceMark() const {
    const LSubdivMesh& shape = BaseShape();
    const size_t count = shape.GetNumLevelVerts(shape.GetNumSubivLevels() - 1);
    return std::hash<std::string_view>()(
        {reinterpret_cast<const char*>(shape.GetAllVertsPtr()), count * sizeof(LPoint3)});
}

bool LNode::IsDeltaKept() const {
    return !lcurMorph_->GetBackupDirty() && !keptDelta_.verts.empty() &&
           keptDelta_.surface == SurfaceMark();
}

// Bases are a copy of the surface, which a delta of nothing does not need.

void LNode::DeltaToObject() {
    DeltaToObject(lcurMorph_->HasOffsets() ? GetDeltaBases() : nullptr);
}

void LNode::DeltaToTangent() {
    UpdateSubdivLevels();
    DeltaToTangent(lcurMorph_->HasOffsets() ? GetDeltaBases() : nullptr);
}

void LNode::DeltaToObject(LMeshBasesUV2* bases) {
    const bool kept = IsDeltaKept();
    const std::vector<LPoint3> verts = std::exchange(keptDelta_, {}).verts;
    // No frame turns what is zero.
    if (!lcurMorph_->HasOffsets()) return lcurMorph_->CacheDetails(false);
    if (!kept && !lcurMorph_->GetBackupDirty() && lcurMorph_->RestoreBackup(bases)) return;
    LSubdivMesh& mesh = *lcurMorph_->GetOrigMesh();
    if (kept) {
        std::copy(verts.begin(), verts.end(), mesh.GetAllVertsPtr());
    } else {
        const BasesDirection heading(bases, LMeshBases::kTangentToObject);
        mesh.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
    }
    lcurMorph_->DropBackup();
    lcurMorph_->SetBackupDirty(false);
    lcurMorph_->CacheDetails(false);
}

void LNode::DeltaToTangent(LMeshBasesUV2* bases) {
    lcurMorph_->DropBackup();
    if (!lcurMorph_->HasOffsets()) return;
    LSubdivMesh& mesh = *lcurMorph_->GetOrigMesh();
    const LPoint3* verts = mesh.GetAllVertsPtr();
    keptDelta_ = {{verts, verts + mesh.GetNumLevelVerts(mesh.GetNumSubivLevels() - 1)},
                  SurfaceMark()};
    lcurMorph_->MakeBackup(bases);
    mesh.CopyVerts(*lcurMorph_->GetBackup());
    lcurMorph_->ForgetDetails();
}

std::unique_ptr<LSubdivMesh> LNode::GetObjectDelta() const {
    auto delta = std::make_unique<LSubdivMesh>(*lcurMorph_->GetOrigMesh(), false);
    if (lsculpt_ || !lcurMorph_->HasOffsets()) return delta;
    if (IsDeltaKept()) {
        std::copy(keptDelta_.verts.begin(), keptDelta_.verts.end(), delta->GetAllVertsPtr());
        return delta;
    }
    LMeshBasesUV2* bases = GetDeltaBases();
    const BasesDirection heading(bases, LMeshBases::kTangentToObject);
    delta->TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
    return delta;
}

/// The targets that a conversion of the node takes, by stage.
std::vector<LNode::Stage> LNode::ConversionStages() const {
    std::vector<Stage> stages = {{"netural", {}}, {"phoneme", {}}, {"group", {}},
                                 {"pose", {}},    {"flexor", {}},  {"mixtarg", {}}};
    const auto add = [&](int stage, LMorphTarget* target) {
        if (target && target->HasXYZ()) stages[stage].targets.push_back(target);
    };
    add(0, GetNeutral());
    for (int i = 0; i < GetNumMorphs(); ++i) add(1, GetMorph(i));
    for (int i = 0; i < GetNumGroups(); ++i)
        for (int t = 0; t < LMorphGroup::kNumTargets; ++t) add(2, GetMorphGroup(i)->GetTarget(t));
    for (int i = 0; getPsdSpace() == kTangentSpace && i < GetNumPoseMorphs(); ++i)
        add(3, GetPoseMorph(i));
    for (int i = 0; getCsSpace() == kTangentSpace && i < GetNumFlexorMorphs(); ++i)
        add(4, GetFlexorMorph(i));
    for (int i = 0; i < GetNumMixTargets(); ++i)
        if (GetMixTarget(i)->GetSpace() == kTangentSpace) add(5, GetMixTarget(i));
    return stages;
}

/// The channel of a conversion; null, and said, when there is none.
const LUVSubdivChannel* LNode::ConversionChannel(const std::string& what, int channel) const {
    if (!lobject_ || !lcurMorph_) return nullptr;
    const LUVSubdivChannel* uv = lobject_->GetUVChannel(channel);
    if (channel < 0 || channel >= lobject_->GetNumUVChannels())
        Say(what + " -- no UV channel with such index");
    else if (!uv)
        Say(what + " -- NULL UV channel");
    return uv;
}

/// One set of frames serves all targets; its positions are replaced where the skin is another.
void LNode::ConvertStages(const std::string& what, const std::vector<Stage>& stages,
                          const LUVSubdivChannel* uv, int iterations, int direction) {
    SkinFrames frames(*lobject_->GetOrigGeom(), uv, -1, iterations, lthGrp());
    for (const Stage& stage : stages) {
        if (!stage.targets.empty()) Say(what + " " + stage.name);
        for (LMorphTarget* target : stage.targets) {
            if (target->skin().empty()) {
                Say("NULL skin");
                continue;
            }
            target->Transform(frames, direction);
            addProxy2target(target, direction == LMeshBases::kObjectToTangent);
        }
    }
}

bool LNode::ConvertObj2Tang(int channel, int oldIterations, int newIterations) {
    const LUVSubdivChannel* uv = ConversionChannel("ConvertObj2Tang", channel);
    if (!uv) return false;
    Say("ConvertObj2Tang delta");
    LMeshBasesUV2 bases(&BaseShape(), uv, LMeshBases::kTangentToObject);
    if (!lsculpt_) DeltaToTangent(&bases);
    if (HasNeutral() && oldIterations != newIterations)
        rcalcTarget(GetNeutral(), oldIterations, newIterations);
    ConvertStages("ConvertObj2Tang", ConversionStages(), uv, newIterations,
                  LMeshBases::kObjectToTangent);
    return true;
}

bool LNode::ConvertTang2Obj(int channel, int iterations) {
    const LUVSubdivChannel* uv = ConversionChannel("ConvertTang2Obj", channel);
    if (!uv) return false;
    Say("ConvertTang2Obj delta");
    LMeshBasesUV2 bases(&BaseShape(), uv, LMeshBases::kTangentToObject);
    if (!lsculpt_) DeltaToObject(&bases);
    ConvertStages("ConvertTang2Obj", ConversionStages(), uv, iterations,
                  LMeshBases::kTangentToObject);
    return true;
}

void LNode::MoveToChannel(int former) {
    if (!lobject_ || !lobject_->GetUVChannel(former) || !lobject_->GetActiveUVChannel()) return;
    ConvertTang2Obj(former, getObjSmoothIt());
    lobject_->UpdateBases();
    RenewProxies();
    UpdateNeutralShape();
    ConvertObj2Tang(getUVchannel(), getObjSmoothIt(), getObjSmoothIt());
}

bool LNode::ConvertObj2TangNeutral(int oldIterations, int newIterations) {
    if (!lobject_ || !lcurMorph_ || !HasNeutral()) return false;
    if (oldIterations != newIterations) rcalcTarget(GetNeutral(), oldIterations, newIterations);
    ConvertStages("ConvertObj2Tang", {{"netural", {GetNeutral()}}}, lobject_->GetActiveUVChannel(),
                  newIterations, LMeshBases::kObjectToTangent);
    return true;
}

bool LNode::ConvertTang2ObjNeutral(int iterations) {
    if (!lobject_ || !lcurMorph_ || !HasNeutral()) return false;
    ConvertStages("ConvertTang2Obj", {{"netural", {GetNeutral()}}}, lobject_->GetActiveUVChannel(),
                  iterations, LMeshBases::kTangentToObject);
    addProxy2target(GetNeutral(), true);
    return true;
}

std::unique_ptr<LSubdivMesh> LNode::getDivSkin(const LMorphTarget* target, int iterations,
                                               int levels) const {
    SkinFrames surface(*lobject_->GetOrigGeom(), nullptr, levels, iterations, lthGrp());
    return std::make_unique<LSubdivMesh>(surface.On(target->skin()), false);
}

std::unique_ptr<LSubdivMesh> LNode::diffSkin(const LMorphTarget* target, int oldIterations,
                                             int newIterations) const {
    auto difference = getDivSkin(target, oldIterations, -1);
    difference->AddAllVerts(*getDivSkin(target, newIterations, -1), -1);
    return difference;
}

void LNode::rcalcTarget(LMorphTarget* target, int oldIterations, int newIterations) const {
    auto shape = diffSkin(target, oldIterations, newIterations);
    target->ApplyToLevels(shape.get(), -1, 1);
    target->CopyFromMesh(shape.get());
}

/// A pass of ConvertSmoothing3: the surfaces before and after, and the neutral on each.
struct LNode::SmoothingPass {
    SkinFrames before, after;
    LSubdivMesh neutralBefore, neutralAfter;

    SmoothingPass(const LNode& node, int oldIterations, int newIterations)
        : before(*node.lobject_->GetOrigGeom(), node.lobject_->GetActiveUVChannel(), -1,
                 oldIterations, node.lthGrp()),
          after(*node.lobject_->GetOrigGeom(), node.lobject_->GetActiveUVChannel(), -1,
                newIterations, node.lthGrp()),
          neutralBefore(*node.lobject_->GetOrigGeom(), false),
          neutralAfter(*node.lobject_->GetOrigGeom(), false) {
        neutralBefore.ClearAllVerts();
        neutralAfter.ClearAllVerts();
    }
    /// Offsets on a skin, in object space, give the same positions after it was smoothed otherwise.
    void Keep(LSubdivMesh& offsets, std::span<const LPoint3> skin) {
        offsets.AddAllVerts(before.On(skin), 1);
        offsets.AddAllVerts(after.On(skin), -1);
    }
};

bool LNode::ConvertSmoothing3(int oldIterations, int newIterations) {
    if (!lobject_ || !lcurMorph_ || oldIterations == newIterations) return false;
    SmoothingPass pass(*this, oldIterations, newIterations);
    LFlexorTarget* neutral = GetNeutral();
    if (HasNeutral() && !neutral->skin().empty()) {
        neutral->CopyToLevels(&pass.neutralBefore);
        LSubdivMesh offsets(pass.neutralBefore, false);
        pass.before.Transform(offsets, neutral->skin(), LMeshBases::kTangentToObject);
        pass.Keep(offsets, neutral->skin());
        pass.after.Transform(offsets, neutral->skin(), LMeshBases::kObjectToTangent);
        neutral->CopyFromMesh(&offsets);
        addProxy2target(neutral, true);
        pass.neutralAfter.CopyVerts(offsets);
    }
    for (int i = 0; i < GetNumPoseMorphs(); ++i)
        SmoothTarget(pass, GetPoseMorph(i), getPsdSpace() == kTangentSpace);
    for (int i = 0; i < GetNumFlexorMorphs(); ++i)
        SmoothTarget(pass, GetFlexorMorph(i), getCsSpace() == kTangentSpace);
    return true;
}

/// The shape of a target with the neutral under it stays, whatever the smoothing.
void LNode::SmoothTarget(SmoothingPass& pass, LMorphTarget* target, bool tangent) {
    const std::vector<LPoint3>& skin = target->skin();
    if (!target->HasXYZ() || skin.empty()) return;
    LSubdivMesh offsets(pass.neutralBefore, false), neutral(pass.neutralBefore, false);
    target->CopyToLevels(&offsets);
    if (tangent) pass.before.Transform(offsets, skin, LMeshBases::kTangentToObject);
    pass.before.Transform(neutral, skin, LMeshBases::kTangentToObject);
    offsets.AddAllVerts(neutral, 1);
    neutral.CopyVerts(pass.neutralAfter);
    pass.after.Transform(neutral, skin, LMeshBases::kTangentToObject);
    offsets.AddAllVerts(neutral, -1);
    pass.Keep(offsets, skin);
    if (tangent) pass.after.Transform(offsets, skin, LMeshBases::kObjectToTangent);
    target->CopyFromMesh(&offsets);
    addProxy2target(target, tangent);
}

void LNode::addProxy2target(LMorphTarget* target, bool tangent) {
    if (!target->HasXYZ()) return;
    if (tangent && lobject_ && lobject_->GetOrigGeom()->GetNumSubivLevels() > 1) {
        if (!lneutralLimit_ || !lneutralLimit0_) updateNeutralLimit(nullptr);
        if (lneutralLimit_ && lneutralLimit0_)
            return target->CreateProxyTang(lneutralLimit_.get(), lneutralLimit0_.get());
    }
    target->CreateProxyObj();
}

void LNode::addProxies2targets() {
    for (LMorphTarget* target : AllTargets())
        addProxy2target(target, target->GetSpace() == kTangentSpace);
}

void LNode::updateNeutralLimit(const LSubdivMesh* mesh) {
    LUVSubdivChannel* uv = lobject_ ? lobject_->GetActiveUVChannel() : nullptr;
    if (!uv || !GetNeutral() || GetNeutral()->skin().empty()) return;
    const LSubdivMesh& geom = mesh ? *mesh : *lobject_->GetOrigGeom();
    const std::vector<LPoint3>& skin = GetNeutral()->skin();
    lneutralLimit0_ = std::make_unique<LMeshBasesUV2>(SkinFrames(geom, uv, 1, 0).On(skin));
    lneutralLimit_ =
        mesh ? std::make_unique<LMeshBasesUV2>(mesh, uv, 0)
             : std::make_unique<LMeshBasesUV2>(SkinFrames(geom, uv, -1, 0, lthGrp()).On(skin));
}

void LNode::RenewProxies() {
    lneutralLimit_.reset();
    lneutralLimit0_.reset();
    addProxies2targets();
}

}  // namespace VantrelSDK
