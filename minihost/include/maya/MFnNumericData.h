#pragma once

#include "maya/MFnData.h"

/// Two or three numbers that travel as one, and the kinds of numbers that attributes hold.
class MFnNumericData : public MFnData {
  public:
    enum Type {
        kInvalid = 0,
        kBoolean,
        kByte,
        kChar,
        kShort,
        k2Short,
        k3Short,
        kInt,
        kLong = kInt,
        k2Int,
        k2Long = k2Int,
        k3Int,
        k3Long = k3Int,
        kFloat,
        k2Float,
        k3Float,
        kDouble,
        k2Double,
        k3Double,
        k4Double,
    };

    MFnNumericData() = default;
    explicit MFnNumericData(const MObject& object, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kNumericData; }
    /// Makes new data of a kind, all zero.
    MObject create(Type kind, MStatus* status = nullptr);
    Type numericType() const;
    MStatus setData2Float(float x, float y);
    MStatus setData3Float(float x, float y, float z);
    MStatus setData2Int(int x, int y);
    MStatus setData2Double(double x, double y);
    MStatus setData3Double(double x, double y, double z);
    MStatus getData2Float(float& x, float& y) const;
    MStatus getData3Float(float& x, float& y, float& z) const;
    MStatus getData2Int(int& x, int& y) const;
    MStatus getData2Double(double& x, double& y) const;
    MStatus getData3Double(double& x, double& y, double& z) const;

    /// How many numbers a kind has, and the kind of each.
    static int Count(Type kind);
    static Type Single(Type kind);
};
