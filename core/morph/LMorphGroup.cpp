#include "core/morph/LMorphGroup.h"

namespace VantrelSDK {

LMorphGroup::LMorphGroup(LNode* owner, std::string name, int level0nv)
    : owner_(owner), name_(std::move(name)), level0nv_(level0nv) {
    for (int i = 0; i < kNumTargets; ++i)
        targets_[i] =
            std::make_unique<LMorphTarget>(owner, name_ + "_" + std::to_string(i), level0nv);
}

}  // namespace VantrelSDK
