#include "maya/MFnNumericData.h"

#include "minihost/graph/Data.h"

using minihost::NumericData;
using minihost::Tuple;

namespace {

MStatus Put(const MObject& object, std::initializer_list<double> numbers) {
    auto* data = object.as<NumericData>();
    if (!data || MFnNumericData::Count(data->value.kind) != static_cast<int>(numbers.size()))
        return MS::kInvalidParameter;
    int i = 0;
    for (const double n : numbers) data->value.numbers[i++] = n;
    return MS::kSuccess;
}

template <class... T>
MStatus Take(const MObject& object, T&... numbers) {
    const auto* data = object.as<NumericData>();
    if (!data || MFnNumericData::Count(data->value.kind) != static_cast<int>(sizeof...(T)))
        return MS::kInvalidParameter;
    int i = 0;
    ((numbers = static_cast<T>(data->value.numbers[i++])), ...);
    return MS::kSuccess;
}

}  // namespace

int MFnNumericData::Count(Type kind) {
    switch (kind) {
        case k2Short:
        case k2Int:
        case k2Float:
        case k2Double:
            return 2;
        case k3Short:
        case k3Int:
        case k3Float:
        case k3Double:
            return 3;
        case k4Double:
            return 4;
        default:
            return 1;
    }
}

MFnNumericData::Type MFnNumericData::Single(Type kind) {
    switch (kind) {
        case k2Short:
        case k3Short:
            return kShort;
        case k2Int:
        case k3Int:
            return kInt;
        case k2Float:
        case k3Float:
            return kFloat;
        case k2Double:
        case k3Double:
        case k4Double:
            return kDouble;
        default:
            return kind;
    }
}

MFnNumericData::MFnNumericData(const MObject& object, MStatus* status) {
    const MStatus done = setObject(object);
    if (status) *status = done;
}

MObject MFnNumericData::create(Type kind, MStatus* status) {
    object_ = Count(kind) > 1 ? MObject(std::make_shared<NumericData>(Tuple{kind, {}})) : MObject();
    if (status) *status = object_.isNull() ? MS::kInvalidParameter : MS::kSuccess;
    return object_;
}

MFnNumericData::Type MFnNumericData::numericType() const {
    const auto* data = object_.as<NumericData>();
    return data ? data->value.kind : kInvalid;
}

MStatus MFnNumericData::setData2Float(float x, float y) {
    return Put(object_, {x, y});
}
MStatus MFnNumericData::setData3Float(float x, float y, float z) {
    return Put(object_, {x, y, z});
}
MStatus MFnNumericData::setData2Int(int x, int y) {
    return Put(object_, {double(x), double(y)});
}
MStatus MFnNumericData::setData2Double(double x, double y) {
    return Put(object_, {x, y});
}
MStatus MFnNumericData::setData3Double(double x, double y, double z) {
    return Put(object_, {x, y, z});
}
MStatus MFnNumericData::getData2Float(float& x, float& y) const {
    return Take(object_, x, y);
}
MStatus MFnNumericData::getData3Float(float& x, float& y, float& z) const {
    return Take(object_, x, y, z);
}
MStatus MFnNumericData::getData2Int(int& x, int& y) const {
    return Take(object_, x, y);
}
MStatus MFnNumericData::getData2Double(double& x, double& y) const {
    return Take(object_, x, y);
}
MStatus MFnNumericData::getData3Double(double& x, double& y, double& z) const {
    return Take(object_, x, y, z);
}
