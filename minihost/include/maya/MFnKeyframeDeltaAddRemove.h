#pragma once

#include "maya/MFnKeyframeDelta.h"

/// A key came, went, or took the place of another at its time.
class MFnKeyframeDeltaAddRemove : public MFnKeyframeDelta {
  public:
    enum DeltaType { kAdded = 0, kRemoved, kReplaced };

    MFnKeyframeDeltaAddRemove() = default;
    explicit MFnKeyframeDeltaAddRemove(const MObject& delta, MStatus* status = nullptr) {
        Attach(delta, status);
    }
    MFn::Type type() const override { return MFn::kKeyframeDeltaAddRemove; }

    DeltaType deltaType(MStatus* status = nullptr) const;
    MTime time(MStatus* status = nullptr) const;
    /// Of the key that is there now, or that was removed.
    double value(MStatus* status = nullptr) const;
};
