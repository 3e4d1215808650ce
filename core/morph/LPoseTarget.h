#pragma once

#include <string>

#include "core/morph/LSpacedTarget.h"

namespace VantrelSDK {

/// A correction for a pose of the joints.
class LPoseTarget : public LSpacedTarget {
  public:
    using LSpacedTarget::LSpacedTarget;

    int GetKind() const override { return kPose; }
    int WriteTo(LBlindData* stream) const override;
    int ReadFrom(LBlindData* stream) override;
};

/// A sculpt that keys of a track call up. The neutral of a node is one too, without a key.
class LFlexorTarget : public LPoseTarget {
  public:
    LFlexorTarget(LNode* owner, std::string name, int level0nv, int uniqid = 0)
        : LPoseTarget(owner, std::move(name), level0nv), uniqid_(uniqid) {}

    int GetKind() const override { return kFlexor; }
    int WriteTo(LBlindData* stream) const override;
    int ReadFrom(LBlindData* stream) override;
    /// The number that keys carry; not an index.
    int GetUniqId() const { return uniqid_; }
    void SetUniqId(int id) { uniqid_ = id; }

  private:
    int uniqid_;
};

}  // namespace VantrelSDK
