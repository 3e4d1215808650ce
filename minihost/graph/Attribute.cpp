#include "minihost/graph/Attribute.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace minihost {
namespace {

double RoundInt(double v) {
    constexpr double kLow = std::numeric_limits<int>::min(),
                     kHigh = std::numeric_limits<int>::max();
    return std::isfinite(v) ? std::trunc(std::clamp(v, kLow, kHigh)) : 0;
}

double Round(MFnNumericData::Type type, double v) {
    switch (type) {
        case MFnNumericData::kBoolean:
            return v != 0;
        case MFnNumericData::kByte:
        case MFnNumericData::kChar:
        case MFnNumericData::kShort:
        case MFnNumericData::kInt:
            return RoundInt(v);
        case MFnNumericData::kFloat:
            return static_cast<double>(static_cast<float>(v));
        default:
            return v;
    }
}

}  // namespace

MFn::Type Attribute::apiType() const {
    switch (kind) {
        case AttributeKind::Numeric:
            return MFn::kNumericAttribute;
        case AttributeKind::Time:
        case AttributeKind::Angle:
        case AttributeKind::Distance:
            return MFn::kUnitAttribute;
        case AttributeKind::Enum:
            return MFn::kEnumAttribute;
        case AttributeKind::Typed:
            return MFn::kTypedAttribute;
        case AttributeKind::Matrix:
            return MFn::kMatrixAttribute;
        case AttributeKind::Generic:
            return MFn::kGenericAttribute;
        case AttributeKind::Compound:
            return MFn::kCompoundAttribute;
        case AttributeKind::Message:
            return MFn::kMessageAttribute;
    }
    return MFn::kAttribute;
}

bool Attribute::IsNumber() const {
    if (IsCompound()) return false;
    switch (kind) {
        case AttributeKind::Numeric:
        case AttributeKind::Time:
        case AttributeKind::Angle:
        case AttributeKind::Distance:
        case AttributeKind::Enum:
            return true;
        default:
            return false;
    }
}

int Attribute::ArrayDepth() const {
    return (parent ? parent->ArrayDepth() : 0) + (isArray ? 1 : 0);
}

bool Attribute::AcceptsData(const Data& data) const {
    switch (kind) {
        case AttributeKind::Matrix:
            return data.dataType() == MFnData::kMatrix;
        case AttributeKind::Typed:
            return dataType == MFnData::kAny ||
                   (data.dataType() == dataType && data.typeId() == dataTypeId);
        case AttributeKind::Generic:
            if (const auto* tuple = dynamic_cast<const NumericData*>(&data))
                return std::ranges::count(acceptedNumeric, tuple->value.kind) > 0;
            return std::ranges::count(acceptedData, data.dataType()) > 0;
        default:
            return false;
    }
}

bool Attribute::Coerce(Datum& value) const {
    if (IsNumber()) {
        double* number = std::get_if<double>(&value);
        if (!number) return false;
        if (kind == AttributeKind::Numeric) *number = Round(numeric, *number);
        if (kind == AttributeKind::Enum) *number = RoundInt(*number);
        return true;
    }
    if (const auto* data = std::get_if<std::shared_ptr<Data>>(&value))
        return !*data || AcceptsData(**data);
    if (std::holds_alternative<double>(value))
        return kind == AttributeKind::Generic && !acceptedNumeric.empty();
    return true;
}

bool Attribute::Accepts(const Attribute& source) const {
    // Sets have members by such connections, and those are compounds.
    if (kind == AttributeKind::Message) return source.kind == kind || source.IsCompound();
    if (source.kind == AttributeKind::Message) return false;
    if (IsCompound() || source.IsCompound()) {
        if (children.size() != source.children.size()) return false;
        for (size_t i = 0; i < children.size(); ++i)
            if (!children[i]->Accepts(*source.children[i])) return false;
        return true;
    }
    if (IsNumber() && source.IsNumber()) return true;
    if (kind == AttributeKind::Generic)
        return source.kind == AttributeKind::Generic ||
               std::ranges::count(acceptedData, source.dataType);
    if (kind == AttributeKind::Matrix || source.kind == AttributeKind::Matrix)
        return kind == source.kind || source.dataType == MFnData::kMatrix ||
               dataType == MFnData::kMatrix;
    return kind == AttributeKind::Typed && source.kind == AttributeKind::Typed &&
           (dataType == source.dataType || dataType == MFnData::kAny) &&
           (dataType != MFnData::kPlugin || dataTypeId == source.dataTypeId);
}

Attribute* Attribute::AddChild(std::shared_ptr<Attribute> child) {
    child->parent = this;
    child->place = static_cast<int>(children.size());
    children.push_back(std::move(child));
    return children.back().get();
}

AttributePtr NumericAttribute(const std::string& longName, const std::string& shortName,
                              MFnNumericData::Type type, double defaultValue, const char* endings) {
    auto attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::Numeric);
    attribute->numeric = type;
    const int count = MFnNumericData::Count(type);
    if (count == 1) {
        attribute->defaultValue = Round(type, defaultValue);
        return attribute;
    }
    for (int i = 0; i < count; ++i) {
        const char ending = endings[i];
        attribute->AddChild(NumericAttribute(longName + ending,
                                             shortName + static_cast<char>(std::tolower(ending)),
                                             MFnNumericData::Single(type), defaultValue));
    }
    return attribute;
}

AttributePtr TypedAttribute(const std::string& longName, const std::string& shortName,
                            MFnData::Type type) {
    auto attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::Typed);
    attribute->dataType = type;
    return attribute;
}

AttributePtr PlainAttribute(const std::string& longName, const std::string& shortName,
                            AttributeKind kind, double defaultValue) {
    auto attribute = std::make_shared<Attribute>(longName, shortName, kind);
    if (attribute->IsNumber()) attribute->defaultValue = defaultValue;
    if (kind == AttributeKind::Matrix) attribute->defaultValue = std::make_shared<MatrixData>();
    return attribute;
}

AttributePtr RotationAttribute(const std::string& longName, const std::string& shortName) {
    auto attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::Numeric);
    attribute->numeric = MFnNumericData::k3Double;
    for (const char c : {'x', 'y', 'z'})
        attribute->AddChild(PlainAttribute(longName + static_cast<char>(c - 'a' + 'A'),
                                           shortName + c, AttributeKind::Angle));
    return attribute;
}

AttributePtr EnumAttribute(const std::string& longName, const std::string& shortName,
                           std::vector<std::pair<std::string, int>> fields, int defaultValue) {
    auto attribute = PlainAttribute(longName, shortName, AttributeKind::Enum, defaultValue);
    attribute->fields = std::move(fields);
    return attribute;
}

}  // namespace minihost
