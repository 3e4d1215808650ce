#pragma once

#include "maya/MFnDependencyNode.h"
#include "maya/MTime.h"

class MAnimCurveChange;
class MDGModifier;

/// An animation curve: keys in the order of time, each with an index from 0. What is done here is
/// told to no keyframe callback and known to no undo queue; what the person does with commands is.
class MFnAnimCurve : public MFnDependencyNode {
  public:
    enum AnimCurveType {
        kAnimCurveTA = 0,  ///< angles, in radians
        kAnimCurveTL,      ///< distances
        kAnimCurveTT,      ///< times, in ticks
        kAnimCurveTU,      ///< numbers without a unit
        kAnimCurveUnknown
    };
    enum TangentType {
        kTangentGlobal = 0,  ///< what new keys have: kTangentSmooth
        kTangentLinear = 2,
        kTangentFlat = 3,
        kTangentSmooth = 4,
        kTangentStep = 5
    };

    MFnAnimCurve() = default;
    explicit MFnAnimCurve(const MObject& curve, MStatus* status = nullptr);
    /// The curve that feeds a plug.
    explicit MFnAnimCurve(const MPlug& plug, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kAnimCurve; }

    /// Makes a curve, fed by the scene's time, that feeds a plug which nothing feeds yet. With a
    /// modifier the node is made at once, and connected by the modifier's doIt.
    MObject create(const MPlug& plug, MDGModifier* modifier = nullptr, MStatus* status = nullptr);

    AnimCurveType animCurveType(MStatus* status = nullptr) const;
    unsigned numKeys(MStatus* status = nullptr) const;
    MStatus evaluate(const MTime& at, double& value) const;
    /// A key at the time of another replaces it. The value comes back bit for bit. The index of the
    /// key. `change` must be null: what was changed is not kept.
    unsigned addKey(const MTime& time, double value, TangentType in = kTangentGlobal,
                    TangentType out = kTangentGlobal, MAnimCurveChange* change = nullptr,
                    MStatus* status = nullptr);
    MStatus remove(unsigned index, MAnimCurveChange* change = nullptr);
    /// Whether there is a key at a time, and its index.
    bool find(const MTime& time, unsigned& index, MStatus* status = nullptr) const;
    /// The earlier one of two that are as close. Fails for a curve without keys.
    unsigned findClosest(const MTime& time, MStatus* status = nullptr) const;
    MTime time(unsigned index, MStatus* status = nullptr) const;
    double value(unsigned index, MStatus* status = nullptr) const;
    MStatus setValue(unsigned index, double value, MAnimCurveChange* change = nullptr);
    TangentType inTangentType(unsigned index, MStatus* status = nullptr) const;
    TangentType outTangentType(unsigned index, MStatus* status = nullptr) const;

  private:
    bool HasKey(unsigned index, MStatus* status) const;
};
