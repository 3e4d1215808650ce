#pragma once

#include <array>
#include <memory>
#include <string>

#include "core/morph/LMorphTarget.h"

namespace VantrelSDK {

/// Four targets that are blended as one by two numbers.
class LMorphGroup {
  public:
    static constexpr int kNumTargets = 4;

    /// `owner` is borrowed and may be null. The targets are empty, with names after the group's.
    LMorphGroup(LNode* owner, std::string name, int level0nv);

    LNode* owner() const { return owner_; }
    const std::string& GetName() const { return name_; }
    void SetName(std::string name) { name_ = std::move(name); }
    int GetLevel0Size() const { return level0nv_; }
    /// Null out of range.
    LMorphTarget* GetTarget(int i) const {
        return i >= 0 && i < kNumTargets ? targets_[i].get() : nullptr;
    }

    /// How far keys are smoothed in time, in 160 ticks; 0 not at all.
    int blur = 1;
    int jointDelay = 0;

    /// The group as a record. Both return one of LBlindData's codes; a failed reading leaves a
    /// group with some of its parts.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);

  private:
    LNode* owner_;
    std::string name_;
    int level0nv_;
    std::array<std::unique_ptr<LMorphTarget>, kNumTargets> targets_;
};

}  // namespace VantrelSDK
