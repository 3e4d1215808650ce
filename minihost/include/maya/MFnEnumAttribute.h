#pragma once

#include "maya/MFnAttribute.h"

/// A number with names for its values.
class MFnEnumAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kEnumAttribute; }

    MObject create(const MString& longName, const MString& shortName, short defaultValue = 0,
                   MStatus* status = nullptr);
    MStatus addField(const MString& name, short value);
    MString fieldName(short value, MStatus* status = nullptr) const;
};
