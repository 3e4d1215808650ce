#pragma once

#include "core/morph/LMorphTarget.h"

namespace VantrelSDK {

/// A target that names the space of its offsets, and can be left out of a frame.
class LSpacedTarget : public LMorphTarget {
  public:
    using LMorphTarget::LMorphTarget;

    int GetSpace() const override { return space_; }
    /// Names the space alone; ConvertToSpace takes the offsets there.
    void SetSpace(int space) { space_ = space; }
    bool IsEnabled() const { return enable_; }
    virtual void SetEnabled(bool enable) { enable_ = enable; }

    /// Takes the offsets to a space by the frames on the target's own skin. 1 done, 0 it is there
    /// already, -1 it has no skin. `frames` has the levels of the target.
    int ConvertToSpace(int space, SkinFrames& frames);

  private:
    int space_ = kTangentSpace;
    bool enable_ = true;
};

}  // namespace VantrelSDK
