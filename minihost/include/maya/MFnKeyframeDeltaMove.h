#pragma once

#include "maya/MFnKeyframeDelta.h"

/// A key got another time or another value.
class MFnKeyframeDeltaMove : public MFnKeyframeDelta {
  public:
    MFnKeyframeDeltaMove() = default;
    explicit MFnKeyframeDeltaMove(const MObject& delta, MStatus* status = nullptr) {
        Attach(delta, status);
    }
    MFn::Type type() const override { return MFn::kKeyframeDeltaMove; }

    MTime previousTime(MStatus* status = nullptr) const;
    MTime currentTime(MStatus* status = nullptr) const;
    double previousValue(MStatus* status = nullptr) const;
    double currentValue(MStatus* status = nullptr) const;
    unsigned previousIndex(MStatus* status = nullptr) const;
};
