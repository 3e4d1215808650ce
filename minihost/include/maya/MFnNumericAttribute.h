#pragma once

#include "maya/MFnAttribute.h"
#include "maya/MFnNumericData.h"

/// Numbers, pairs and triples of them.
class MFnNumericAttribute : public MFnAttribute {
  public:
    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kNumericAttribute; }

    /// The default is one for all numbers of a pair or triple. Children end in 0, 1, 2.
    MObject create(const MString& longName, const MString& shortName, MFnNumericData::Type unit,
                   double defaultValue = 0, MStatus* status = nullptr);
    /// Three children of one's own.
    MObject create(const MString& longName, const MString& shortName, const MObject& child1,
                   const MObject& child2, const MObject& child3 = MObject::kNullObj,
                   MStatus* status = nullptr);
    /// Children end in R, G, B.
    MObject createColor(const MString& longName, const MString& shortName,
                        MStatus* status = nullptr);
    /// Children end in X, Y, Z.
    MObject createPoint(const MString& longName, const MString& shortName,
                        MStatus* status = nullptr);
    MFnNumericData::Type unitType(MStatus* status = nullptr) const;
    MStatus setDefault(double value);
    MStatus setDefault(double x, double y);
    MStatus setDefault(double x, double y, double z);
    MStatus getDefault(double& value) const;
};
