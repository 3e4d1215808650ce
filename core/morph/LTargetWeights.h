#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/morph/LFrameTerm.h"

namespace VantrelSDK {

class LTargetLists;

/// The targets of a node with weights of their own, as sliders give them: the same at any time.
class LTargetWeights : public LFrameTerm {
  public:
    /// `lists` is borrowed.
    explicit LTargetWeights(const LTargetLists& lists) : lists_(lists) {}

    /// By the name of a target; one that does not exist adds nothing. A weight of 0 takes the
    /// target out.
    void Set(const std::string& name, float weight);
    void Clear() { weights_.clear(); }

    bool Plays() const override { return !weights_.empty(); }
    void AddTo(LSubdivMesh& delta, LFrame& frame) override;
    void Tag(int time, VertTagClallback& tag) const override;

  private:
    const LTargetLists& lists_;
    /// In the order in which they were first set.
    std::vector<std::pair<std::string, float>> weights_;
};

}  // namespace VantrelSDK
