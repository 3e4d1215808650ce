#pragma once

#include "maya/MFnData.h"
#include "maya/MPointArray.h"

/// Points, as plugs hold them.
class MFnPointArrayData : public MFnData {
  public:
    MFnPointArrayData() = default;
    explicit MFnPointArrayData(const MObject& data, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kPointArrayData; }
    MObject create(MStatus* status = nullptr);
    MObject create(const MPointArray& points, MStatus* status = nullptr);
    unsigned length(MStatus* status = nullptr) const;
    MStatus copyTo(MPointArray& points) const;
    MStatus set(const MPointArray& points);
    /// A copy of the points.
    MPointArray array(MStatus* status = nullptr) const;
};
