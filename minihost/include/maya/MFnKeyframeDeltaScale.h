#pragma once

#include "maya/MFnKeyframeDelta.h"

/// The times of keys were scaled.
class MFnKeyframeDeltaScale : public MFnKeyframeDelta {
  public:
    MFnKeyframeDeltaScale() = default;
    explicit MFnKeyframeDeltaScale(const MObject& delta, MStatus* status = nullptr) {
        Attach(delta, status);
    }
    MFn::Type type() const override { return MFn::kKeyframeDeltaScale; }

    /// Of the first key and the last, before and now.
    MTime previousStartTime(MStatus* status = nullptr) const;
    MTime previousEndTime(MStatus* status = nullptr) const;
    MTime currentStartTime(MStatus* status = nullptr) const;
    MTime currentEndTime(MStatus* status = nullptr) const;
};
