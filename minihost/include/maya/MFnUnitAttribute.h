#pragma once

#include "maya/MAngle.h"
#include "maya/MFnAttribute.h"
#include "maya/MTime.h"

/// A time, an angle or a distance.
class MFnUnitAttribute : public MFnAttribute {
  public:
    enum Type { kInvalid, kAngle, kDistance, kTime };

    using MFnAttribute::MFnAttribute;
    MFn::Type type() const override { return MFn::kUnitAttribute; }

    /// The default in seconds, radians or the scene's length.
    MObject create(const MString& longName, const MString& shortName, Type unit,
                   double defaultValue = 0, MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, const MTime& defaultValue,
                   MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, const MAngle& defaultValue,
                   MStatus* status = nullptr);
    Type unitType(MStatus* status = nullptr) const;
};
