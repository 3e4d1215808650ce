#pragma once

#include "core/math/LPoint3.h"
#include "core/sculpt/ScreenMask.h"

namespace VantrelSDK {

class LNode;

/// A mask that weakens a brush where a view shows the surface so or so.
class LDynMask {
  public:
    LDynMask() = default;
    explicit LDynMask(ScreenMask picture) { SetPicture(std::move(picture)); }
    virtual ~LDynMask() = default;

    /// As it is shown to users.
    virtual const char* GetName() const { return ""; }
    /// 0 to 1: how much of a brush's weight a position of the surface lets through. Called by
    /// workers.
    virtual float GetWeight(const LNode*, const LPoint3& p) const { return reader_.WeightAt(p); }
    /// Where the weights are from; one of no pixels lets nothing through.
    const ScreenMask& picture() const { return picture_; }

  protected:
    void SetPicture(ScreenMask picture) {
        picture_ = std::move(picture);
        reader_ = ScreenMaskReader(picture_);
    }

  private:
    ScreenMask picture_;
    ScreenMaskReader reader_;
};

}  // namespace VantrelSDK
