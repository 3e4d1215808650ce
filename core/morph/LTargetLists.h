#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/morph/LMixTarget.h"
#include "core/morph/LMorphGroup.h"
#include "core/morph/LPoseTarget.h"

namespace VantrelSDK {

class LUVSubdivChannel;

/// The stored shapes of a node, in lists by kind, and the neutral, which always applies and which
/// all others are relative to. Owns them. Indices out of range give null or false.
class LTargetLists {
  public:
    static constexpr int kNumStdMorphs = 17;
    static constexpr int kMaxGroups = 19;

    explicit LTargetLists(LNode* owner) : owner_(owner) {}
    virtual ~LTargetLists() = default;

    /// The name of a standard target, and from 17 on "EXT_" and a number from 0.
    static std::string GetDefMorphName(int i);
    /// Makes the standard targets and the neutral, all empty, in place of all that there is.
    void InitMorphs(int level0nv);
    virtual void clearMorphs();
    /// Vertices of level 0, which new targets take.
    int GetLevel0Size() const { return level0nv_; }
    void SetLevel0Size(int level0nv) { level0nv_ = level0nv; }

    /// Standard targets come first, extra ones behind them.
    int GetNumStdMorphs() const { return static_cast<int>(lstdMorphs_.size()); }
    int GetNumExtMorphs() const { return static_cast<int>(lextMorphs_.size()); }
    int GetNumMorphs() const { return GetNumStdMorphs() + GetNumExtMorphs(); }
    LMorphTarget* GetMorph(int i) const;
    /// The first of that name; -1 without one.
    int FindMorph(const std::string& name) const;
    /// Replaces a target; the former one goes.
    bool SetMorph(std::unique_ptr<LMorphTarget> target, int i);
    /// Appends an extra target named "ext" and the number of extra ones before it.
    LMorphTarget* AddMorph();
    void AddStdMorph(std::unique_ptr<LMorphTarget> target) {
        lstdMorphs_.push_back(std::move(target));
    }
    void AddExtMorph(std::unique_ptr<LMorphTarget> target) {
        lextMorphs_.push_back(std::move(target));
    }
    /// Deletes an extra target; standard ones stay.
    bool DelMorph(int i);
    bool SetMorphName(int i, std::string name);

    /// Null before InitMorphs.
    LFlexorTarget* GetNeutral() const { return lneutral_.get(); }
    void SetNeutral(std::unique_ptr<LFlexorTarget> neutral) { lneutral_ = std::move(neutral); }
    bool HasNeutral() const { return lneutral_ && lneutral_->HasXYZ(); }

    /// Groups: at most kMaxGroups. Setting replaces, adding at a place moves the others up.
    int GetNumGroups() const { return static_cast<int>(lmphGroup_.size()); }
    LMorphGroup* GetMorphGroup(int i) const { return At(lmphGroup_, i); }
    bool AddMorphGroup(std::unique_ptr<LMorphGroup> group);
    bool AddMorphGroup(int i, std::unique_ptr<LMorphGroup> group);
    bool SetMorphGroup(int i, std::unique_ptr<LMorphGroup> group);
    bool RemoveMorphGroup(int i) { return Erase(lmphGroup_, i); }

    int GetNumPoseMorphs() const { return static_cast<int>(lposeMorphs_.size()); }
    LPoseTarget* GetPoseMorph(int i) const { return At(lposeMorphs_, i); }
    void AddPoseMorph(std::unique_ptr<LPoseTarget> pose) {
        lposeMorphs_.push_back(std::move(pose));
    }
    bool DelPoseMorph(int i) { return Erase(lposeMorphs_, i); }

    int GetNumFlexorMorphs() const { return static_cast<int>(lflexorMorphs_.size()); }
    LFlexorTarget* GetFlexorMorph(int i) const { return At(lflexorMorphs_, i); }
    /// By the number that keys carry.
    LFlexorTarget* GetFlexorMorphById(int uniqid) const;
    void AddFlexorMorph(std::unique_ptr<LFlexorTarget> flexor) {
        lflexorMorphs_.push_back(std::move(flexor));
    }
    bool DelFlexorMorph(int i) { return Erase(lflexorMorphs_, i); }

    int GetNumMixTargets() const { return static_cast<int>(mixtargs_.size()); }
    LMixTarget* GetMixTarget(int i) const { return At(mixtargs_, i); }
    void AddMixTarget(std::unique_ptr<LMixTarget> mix) { mixtargs_.push_back(std::move(mix)); }
    bool DelMixTarget(int i) { return Erase(mixtargs_, i); }

    /// All targets: the neutral, standard, extra, those of the groups, poses, flexors, mix targets.
    std::vector<LMorphTarget*> AllTargets() const;

    /// Some target has offsets.
    bool HasTargets() const;

    /// Targets with offsets get the top level of `geom`, or lose it. Those in tangent space with a
    /// skin go through object space on it; `uv` gives its frames and may be null. `scratch` has the
    /// levels of `geom` and is left with no meaning. `workers` may be null.
    void AddTargetsLevel(LSubdivMesh& scratch, const LSubdivMesh& geom, const LUVSubdivChannel* uv,
                         LThreadGroup* workers);
    void DeleteTargetsLevel(const LSubdivMesh& geom, const LUVSubdivChannel* uv,
                            LThreadGroup* workers);

  private:
    template <class T>
    using List = std::vector<std::unique_ptr<T>>;

    template <class T>
    static T* At(const List<T>& list, int i) {
        return i >= 0 && i < static_cast<int>(list.size()) ? list[i].get() : nullptr;
    }
    template <class T>
    static bool Erase(List<T>& list, int i) {
        if (!At(list, i)) return false;
        list.erase(list.begin() + i);
        return true;
    }

    LNode* owner_;
    int level0nv_ = 0;
    List<LMorphTarget> lstdMorphs_, lextMorphs_;
    std::unique_ptr<LFlexorTarget> lneutral_;
    List<LMorphGroup> lmphGroup_;
    List<LPoseTarget> lposeMorphs_;
    List<LFlexorTarget> lflexorMorphs_;
    List<LMixTarget> mixtargs_;
};

}  // namespace VantrelSDK
