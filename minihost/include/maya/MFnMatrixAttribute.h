#pragma once

#include "maya/MFnAttribute.h"

/// A matrix, the identity by default.
class MFnMatrixAttribute : public MFnAttribute {
  public:
    enum Type { kFloat, kDouble };

    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kMatrixAttribute; }

    MObject create(const MString& longName, const MString& shortName, Type type = kDouble,
                   MStatus* status = nullptr);
};
