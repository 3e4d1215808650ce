#include "core/morph/LTargetLists.h"

#include <algorithm>
#include <utility>

#include "core/morph/SkinFrames.h"

namespace VantrelSDK {

std::string LTargetLists::GetDefMorphName(int i) {
    static constexpr const char* kNames[kNumStdMorphs] = {
        "AH", "BIG_AH", "A",  "EH_A",  "OO_W", "OH", "EE_YY", "TT", "TH",
        "SS", "KK_JJ",  "LL", "PP_BB", "V_FF", "NN", "MM",    "RR"};
    if (i >= 0 && i < kNumStdMorphs) return kNames[i];
    return "EXT_" + std::to_string(i - kNumStdMorphs);
}

void LTargetLists::InitMorphs(int level0nv) {
    clearMorphs();
    level0nv_ = level0nv;
    for (int i = 0; i < kNumStdMorphs; ++i)
        AddStdMorph(std::make_unique<LMorphTarget>(owner_, GetDefMorphName(i), level0nv));
    lneutral_ = std::make_unique<LFlexorTarget>(owner_, "NEUTRAL", level0nv);
}

void LTargetLists::clearMorphs() {
    lstdMorphs_.clear();
    lextMorphs_.clear();
    lneutral_.reset();
    lmphGroup_.clear();
    lposeMorphs_.clear();
    lflexorMorphs_.clear();
    mixtargs_.clear();
    level0nv_ = 0;
}

LMorphTarget* LTargetLists::GetMorph(int i) const {
    return i < GetNumStdMorphs() ? At(lstdMorphs_, i) : At(lextMorphs_, i - GetNumStdMorphs());
}

int LTargetLists::FindMorph(const std::string& name) const {
    for (int i = 0; i < GetNumMorphs(); ++i)
        if (GetMorph(i)->GetName() == name) return i;
    return -1;
}

bool LTargetLists::SetMorph(std::unique_ptr<LMorphTarget> target, int i) {
    if (!target || !GetMorph(i)) return false;
    auto& place = i < GetNumStdMorphs() ? lstdMorphs_[i] : lextMorphs_[i - GetNumStdMorphs()];
    place = std::move(target);
    return true;
}

LMorphTarget* LTargetLists::AddMorph() {
    AddExtMorph(std::make_unique<LMorphTarget>(owner_, "ext " + std::to_string(GetNumExtMorphs()),
                                               level0nv_));
    return lextMorphs_.back().get();
}

bool LTargetLists::DelMorph(int i) {
    return i >= GetNumStdMorphs() && Erase(lextMorphs_, i - GetNumStdMorphs());
}

bool LTargetLists::SetMorphName(int i, std::string name) {
    LMorphTarget* target = GetMorph(i);
    if (target) target->SetName(std::move(name));
    return target != nullptr;
}

bool LTargetLists::AddMorphGroup(std::unique_ptr<LMorphGroup> group) {
    return AddMorphGroup(GetNumGroups(), std::move(group));
}

bool LTargetLists::AddMorphGroup(int i, std::unique_ptr<LMorphGroup> group) {
    if (!group || GetNumGroups() >= kMaxGroups || i < 0 || i > GetNumGroups()) return false;
    lmphGroup_.insert(lmphGroup_.begin() + i, std::move(group));
    return true;
}

bool LTargetLists::SetMorphGroup(int i, std::unique_ptr<LMorphGroup> group) {
    if (!group || !GetMorphGroup(i)) return false;
    lmphGroup_[i] = std::move(group);
    return true;
}

LFlexorTarget* LTargetLists::GetFlexorMorphById(int uniqid) const {
    for (const auto& flexor : lflexorMorphs_)
        if (flexor->GetUniqId() == uniqid) return flexor.get();
    return nullptr;
}

std::vector<LMorphTarget*> LTargetLists::AllTargets() const {
    std::vector<LMorphTarget*> all;
    if (lneutral_) all.push_back(lneutral_.get());
    for (int i = 0; i < GetNumMorphs(); ++i) all.push_back(GetMorph(i));
    for (const auto& group : lmphGroup_)
        for (int i = 0; i < LMorphGroup::kNumTargets; ++i) all.push_back(group->GetTarget(i));
    const auto append = [&](const auto& list) {
        for (const auto& target : list) all.push_back(target.get());
    };
    append(lposeMorphs_);
    append(lflexorMorphs_);
    append(mixtargs_);
    return all;
}

namespace {

/// Frames on the skins of targets, without and with the top level of a geometry. Made when a target
/// asks for them.
class LevelFrames {
  public:
    LevelFrames(const LSubdivMesh& geom, const LUVSubdivChannel* uv, LThreadGroup* workers)
        : geom_(geom), uv_(uv), workers_(workers) {}

    /// For one target; none when it needs none.
    std::pair<SkinFrames*, SkinFrames*> For(const LMorphTarget& target) {
        if (!uv_ || target.GetSpace() != kTangentSpace || target.skin().empty()) return {};
        const int levels = geom_.GetNumSubivLevels();
        if (!below_) {
            below_ = std::make_unique<SkinFrames>(geom_, uv_, levels - 1, 0, workers_);
            above_ = std::make_unique<SkinFrames>(geom_, uv_, levels, 0, workers_);
        }
        return {below_.get(), above_.get()};
    }

  private:
    const LSubdivMesh& geom_;
    const LUVSubdivChannel* uv_;
    LThreadGroup* workers_;
    std::unique_ptr<SkinFrames> below_, above_;
};

}  // namespace

bool LTargetLists::HasTargets() const {
    const auto all = AllTargets();
    return std::any_of(all.begin(), all.end(), [](auto* target) { return target->HasXYZ(); });
}

void LTargetLists::AddTargetsLevel(LSubdivMesh& scratch, const LSubdivMesh& geom,
                                   const LUVSubdivChannel* uv, LThreadGroup* workers) {
    LevelFrames frames(geom, uv, workers);
    for (LMorphTarget* target : AllTargets()) {
        if (!target->HasXYZ()) continue;
        const auto [below, above] = frames.For(*target);
        if (!target->AddSubdivLevelOwnSkin(&scratch, below, above))
            target->AddSubdivLevel(&scratch);
    }
}

void LTargetLists::DeleteTargetsLevel(const LSubdivMesh& geom, const LUVSubdivChannel* uv,
                                      LThreadGroup* workers) {
    const int top = geom.GetNumSubivLevels() - 1;
    if (top == 0) return;
    LevelFrames frames(geom, uv, workers);
    for (LMorphTarget* target : AllTargets()) {
        const auto [below, above] = frames.For(*target);
        target->DeleteTopLevelOwnSkin(geom.GetNumLevelVerts(top - 1), below, above);
    }
}

}  // namespace VantrelSDK
