#pragma once

#include "maya/MFloatArray.h"
#include "maya/MIntArray.h"
#include "maya/MObject.h"
#include "maya/MPlug.h"
#include "maya/MString.h"

/// A curve over 0 to 1 held in a plug: an array of entries, each a position, a value and an
/// interpolation (0 none, 1 linear, 2 smooth, 3 spline). Entries may stand in any order of index.
class MRampAttribute {
  public:
    enum MInterpolation { kNone, kLinear, kSmooth, kSpline };

    MRampAttribute() = default;
    explicit MRampAttribute(const MPlug& plug, MStatus* status = nullptr);
    MRampAttribute(const MObject& node, const MObject& attribute, MStatus* status = nullptr);

    /// An attribute with children "<long>_Position", "<long>_FloatValue", "<long>_Interp".
    static MObject createCurveRamp(const MString& longName, const MString& shortName,
                                   MStatus* status = nullptr);

    unsigned getNumEntries(MStatus* status = nullptr) const;
    /// Parallel arrays; `indices` are the entries' logical ones.
    void getEntries(MIntArray& indices, MFloatArray& positions, MFloatArray& values,
                    MIntArray& interpolations, MStatus* status = nullptr) const;
    /// Behind the entries that there are.
    void addEntries(const MFloatArray& positions, const MFloatArray& values,
                    const MIntArray& interpolations, MStatus* status = nullptr);
    void deleteEntries(const MIntArray& indices, MStatus* status = nullptr);
    void setPositionAtIndex(float position, unsigned index, MStatus* status = nullptr);
    void setValueAtIndex(float value, unsigned index, MStatus* status = nullptr);
    void setInterpolationAtIndex(MInterpolation interpolation, unsigned index,
                                 MStatus* status = nullptr);
    /// The curve at a position: held before the first entry and behind the last; 0 without entries.
    void getValueAtPosition(float position, float& value, MStatus* status = nullptr) const;

  private:
    MPlug plug_;
};
