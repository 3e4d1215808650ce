#pragma once

#include "maya/MFnKeyframeDelta.h"

/// A key became a breakdown, or a plain key again.
class MFnKeyframeDeltaBreakdown : public MFnKeyframeDelta {
  public:
    MFnKeyframeDeltaBreakdown() = default;
    explicit MFnKeyframeDeltaBreakdown(const MObject& delta, MStatus* status = nullptr) {
        Attach(delta, status);
    }
    MFn::Type type() const override { return MFn::kKeyframeDeltaBreakdown; }

    bool wasBreakdown(MStatus* status = nullptr) const;
    bool isBreakdown(MStatus* status = nullptr) const;
};
