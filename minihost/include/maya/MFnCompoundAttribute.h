#pragma once

#include "maya/MFnAttribute.h"

/// Attributes under one name.
class MFnCompoundAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kCompoundAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    /// The child belongs to the compound from here on.
    MStatus addChild(const MObject& child);
    unsigned numChildren(MStatus* status = nullptr) const;
    MObject child(unsigned index, MStatus* status = nullptr) const;
};
