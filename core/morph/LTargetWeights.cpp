#include "core/morph/LTargetWeights.h"

#include <algorithm>

#include "core/morph/LTargetLists.h"
#include "core/morph/MorphCallbacks.h"

namespace VantrelSDK {

void LTargetWeights::Set(const std::string& name, float weight) {
    const auto found = std::find_if(weights_.begin(), weights_.end(),
                                    [&](const auto& entry) { return entry.first == name; });
    if (found != weights_.end())
        found->second = weight;
    else
        weights_.emplace_back(name, weight);
    std::erase_if(weights_, [](const auto& entry) { return entry.second == 0; });
}

void LTargetWeights::AddTo(LSubdivMesh& delta, LFrame& frame) {
    for (const auto& [name, weight] : weights_)
        if (LMorphTarget* target = lists_.GetMorph(lists_.FindMorph(name)))
            target->ApplyToLevels(&delta, frame.levels, weight);
}

void LTargetWeights::Tag(int, VertTagClallback& tag) const {
    for (const auto& entry : weights_)
        if (LMorphTarget* target = lists_.GetMorph(lists_.FindMorph(entry.first)))
            target->Traverse(&tag);
}

}  // namespace VantrelSDK
