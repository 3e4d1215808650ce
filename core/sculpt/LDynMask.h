#pragma once

#include "core/math/LPoint3.h"

namespace VantrelSDK {

class LNode;

/// A mask computed from the surface while a brush runs.
class LDynMask {
  public:
    virtual ~LDynMask() = default;
    /// 0 to 1: how much of a brush's weight a position of the surface lets through. Called by
    /// workers.
    virtual float GetWeight(const LNode* node, const LPoint3& p) const = 0;
};

}  // namespace VantrelSDK
