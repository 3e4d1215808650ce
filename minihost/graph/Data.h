#pragma once

#include <string>
#include <variant>
#include <vector>

#include "maya/MFnData.h"
#include "maya/MFnNumericData.h"
#include "maya/MMatrix.h"
#include "maya/MPoint.h"
#include "maya/MTypeId.h"
#include "maya/MVector.h"
#include "minihost/base/Object.h"

namespace minihost {

/// What travels along connections beside plain numbers. Data that stands in a plug is shared and
/// not changed; who wants to change it makes a copy.
class Data : public Object {
  public:
    virtual MFnData::Type dataType() const = 0;
    /// Which plug-in data it is; 0 for the host's own types.
    virtual MTypeId typeId() const { return {}; }
    virtual std::shared_ptr<Data> Copy() const = 0;
    /// Whether both say the same; what cannot be compared is equal to itself only.
    virtual bool Equals(const Data& other) const { return this == &other; }
};

/// What a plug that has no parts holds: nothing, a number (booleans, integers, enumerations and
/// single precision included; times in ticks, angles in radians), or data.
using Datum = std::variant<std::monostate, double, std::shared_ptr<Data>>;

bool SameValue(const Datum& a, const Datum& b);
/// The number that a value is, 0 for none.
inline double NumberOf(const Datum& value) {
    const double* number = std::get_if<double>(&value);
    return number ? *number : 0;
}
/// The data of a kind that a value is, null for none.
template <class T>
std::shared_ptr<T> DataOf(const Datum& value) {
    const auto* data = std::get_if<std::shared_ptr<Data>>(&value);
    return data ? std::dynamic_pointer_cast<T>(*data) : nullptr;
}

/// Data that is one plain value.
template <class T, MFn::Type kApi, MFnData::Type kType>
class PlainData : public Data {
  public:
    PlainData() = default;
    explicit PlainData(T v) : value(std::move(v)) {}

    MFn::Type apiType() const override { return kApi; }
    MFnData::Type dataType() const override { return kType; }
    std::shared_ptr<Data> Copy() const override { return std::make_shared<PlainData>(value); }
    bool Equals(const Data& other) const override {
        const auto* same = dynamic_cast<const PlainData*>(&other);
        return same && same->value == value;
    }

    T value{};
};

using StringData = PlainData<std::string, MFn::kStringData, MFnData::kString>;
using MatrixData = PlainData<MMatrix, MFn::kMatrixData, MFnData::kMatrix>;
using StringArrayData =
    PlainData<std::vector<std::string>, MFn::kStringArrayData, MFnData::kStringArray>;
using IntArrayData = PlainData<std::vector<int>, MFn::kIntArrayData, MFnData::kIntArray>;
using DoubleArrayData =
    PlainData<std::vector<double>, MFn::kDoubleArrayData, MFnData::kDoubleArray>;
using PointArrayData = PlainData<std::vector<MPoint>, MFn::kPointArrayData, MFnData::kPointArray>;
using VectorArrayData =
    PlainData<std::vector<MVector>, MFn::kVectorArrayData, MFnData::kVectorArray>;

/// Two to four numbers.
struct Tuple {
    MFnNumericData::Type kind = MFnNumericData::kInvalid;
    double numbers[4] = {};
    bool operator==(const Tuple&) const = default;
};
using NumericData = PlainData<Tuple, MFn::kNumericData, MFnData::kNumeric>;

/// Components of one geometry: kind by its MFn type, elements in increasing order.
struct Component {
    MFn::Type kind = MFn::kMeshVertComponent;
    /// All elements; `elements` then names them all or, where their number is not known, none.
    bool complete = false;
    std::vector<int> elements;
    bool operator==(const Component&) const = default;
};
using ComponentListData =
    PlainData<std::vector<Component>, MFn::kComponentListData, MFnData::kComponentList>;

/// Empty data of a built-in type, null for a type that has none.
std::shared_ptr<Data> MakeData(MFnData::Type type);

}  // namespace minihost
