#pragma once

#include "core/morph/LSpacedTarget.h"

namespace VantrelSDK {

/// A shape whose weight is a slider.
class LMixTarget : public LSpacedTarget {
  public:
    using LSpacedTarget::LSpacedTarget;

    int GetKind() const override { return kMix; }
    int WriteTo(LBlindData* stream) const override;
    int ReadFrom(LBlindData* stream) override;
    /// Its keys are shown.
    bool GetShow() const { return show_; }
    void SetShow(bool show) { show_ = show; }

  private:
    bool show_ = true;
};

}  // namespace VantrelSDK
