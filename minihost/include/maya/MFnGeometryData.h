#pragma once

#include "maya/MFnData.h"

/// What all geometry data has: object groups, which are components under numbers.
class MFnGeometryData : public MFnData {
  public:
    MFnGeometryData() = default;
    explicit MFnGeometryData(const MObject& data, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kGeometryData; }
    unsigned objectGroupCount(MStatus* status = nullptr) const;
    /// The number of a group by its place.
    unsigned objectGroup(unsigned place, MStatus* status = nullptr) const;
    bool hasObjectGroup(unsigned id, MStatus* status = nullptr) const;
    MFn::Type objectGroupType(unsigned id, MStatus* status = nullptr) const;
    /// A component of its own; null for a number that is none.
    MObject objectGroupComponent(unsigned id, MStatus* status = nullptr) const;
    MStatus addObjectGroup(unsigned id);
    /// Adds to the components that the group has.
    MStatus addObjectGroupComponent(unsigned id, const MObject& component);
    MStatus setObjectGroupComponent(unsigned id, const MObject& component);
    MStatus removeObjectGroup(unsigned id);
    MStatus copyObjectGroups(const MObject& from);
};
