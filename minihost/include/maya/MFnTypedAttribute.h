#pragma once

#include "maya/MFnAttribute.h"
#include "maya/MTypeId.h"

/// Data of one type.
class MFnTypedAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kTypedAttribute; }

    MObject create(const MString& longName, const MString& shortName, MFnData::Type dataType,
                   MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, MFnData::Type dataType,
                   const MObject& defaultData, MStatus* status = nullptr);
    /// Plug-in data.
    MObject create(const MString& longName, const MString& shortName, const MTypeId& dataType,
                   MStatus* status = nullptr);
    MFnData::Type attrType(MStatus* status = nullptr) const;
    MTypeId pluginDataType() const;
};
