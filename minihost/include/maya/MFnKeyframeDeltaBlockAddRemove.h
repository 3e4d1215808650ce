#pragma once

#include "maya/MFnKeyframeDelta.h"

class MDoubleArray;
class MTimeArray;

/// Several keys came or went as one.
class MFnKeyframeDeltaBlockAddRemove : public MFnKeyframeDelta {
  public:
    enum DeltaType { kAdded = 0, kRemoved };

    MFnKeyframeDeltaBlockAddRemove() = default;
    explicit MFnKeyframeDeltaBlockAddRemove(const MObject& delta, MStatus* status = nullptr) {
        Attach(delta, status);
    }
    MFn::Type type() const override { return MFn::kKeyframeDeltaBlockAddRemove; }

    DeltaType deltaType(MStatus* status = nullptr) const;
    unsigned numKeys(MStatus* status = nullptr) const;
    /// The times of the first key and the last.
    MTime startTime(MStatus* status = nullptr) const;
    MTime endTime(MStatus* status = nullptr) const;
    MStatus getTimes(MTimeArray& times) const;
    MStatus getValues(MDoubleArray& values) const;
};
