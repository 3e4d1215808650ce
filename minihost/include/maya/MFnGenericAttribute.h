#pragma once

#include "maya/MFnAttribute.h"
#include "maya/MFnNumericData.h"

/// Data of any of the types that it was told to accept.
class MFnGenericAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kGenericAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    MStatus addAccept(MFnData::Type type);
    MStatus addAccept(MFnNumericData::Type type);
};
