#pragma once

#include "maya/MFnAttribute.h"

/// Holds nothing: it is there to be connected.
class MFnMessageAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kMessageAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
};
