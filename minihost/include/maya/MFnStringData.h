#pragma once

#include "maya/MFnData.h"
#include "maya/MString.h"

/// Text.
class MFnStringData : public MFnData {
  public:
    MFnStringData() = default;
    explicit MFnStringData(const MObject& object, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kStringData; }
    MObject create(const MString& text, MStatus* status = nullptr);
    MString string(MStatus* status = nullptr) const;
    MStatus set(const MString& text);
};
