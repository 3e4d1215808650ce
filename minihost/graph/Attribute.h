#pragma once

#include <string>
#include <utility>
#include <vector>

#include "maya/MFnNumericData.h"
#include "maya/MTypeId.h"
#include "minihost/base/Object.h"
#include "minihost/graph/Data.h"

namespace minihost {

enum class AttributeKind {
    Numeric,
    Time,
    Angle,
    Distance,
    Enum,
    Typed,
    Matrix,
    Generic,
    Compound,
    Message
};

/// What an element of an array does when the connection into it is cut.
enum class DisconnectBehavior { Delete, Reset, Nothing };

/// One attribute of a node type: what its plugs hold and how they behave. Owned by its parent or by
/// the node type that adds it, and shared by the types built on that one; does not change once a
/// node exists.
class Attribute : public Object {
  public:
    Attribute(std::string longName, std::string shortName, AttributeKind kind)
        : longName(std::move(longName)), shortName(std::move(shortName)), kind(kind) {}

    MFn::Type apiType() const override;
    /// Whether its plugs have parts of their own: compounds, pairs and triples of numbers.
    bool IsCompound() const { return !children.empty() || kind == AttributeKind::Compound; }
    bool IsNumber() const;
    /// How many arrays stand between a node and a plug of this attribute, itself included.
    int ArrayDepth() const;
    const Attribute* Root() const { return parent ? parent->Root() : this; }
    /// The value as this attribute holds it: numbers rounded to its precision, text to a number
    /// never. Null data stays; false where the value is of another kind.
    bool Coerce(Datum& value) const;
    /// Whether values of `source` may flow into this attribute.
    bool Accepts(const Attribute& source) const;
    bool AcceptsData(const Data& data) const;
    bool Matches(const std::string& name) const { return name == longName || name == shortName; }

    Attribute* AddChild(std::shared_ptr<Attribute> child);
    std::string longName, shortName;
    AttributeKind kind;
    MFnNumericData::Type numeric = MFnNumericData::kInvalid;
    MFnData::Type dataType = MFnData::kInvalid;
    /// Of plug-in data, and of what a generic attribute takes.
    MTypeId dataTypeId;
    std::vector<MFnData::Type> acceptedData;
    std::vector<MFnNumericData::Type> acceptedNumeric;
    Datum defaultValue;
    /// Names of an enumeration's values.
    std::vector<std::pair<std::string, int>> fields;

    bool isArray = false, isStorable = true, isKeyable = false, isReadable = true;
    bool isWritable = true, isHidden = false, isConnectable = true, isCached = true;
    bool indexMatters = true, isRamp = false;
    DisconnectBehavior disconnect = DisconnectBehavior::Nothing;

    Attribute* parent = nullptr;
    std::vector<std::shared_ptr<Attribute>> children;
    /// Its place among its siblings, or among the attributes of its node type.
    int place = -1;
    /// Its number among all attributes of its node type, children included.
    int id = -1;
};

using AttributePtr = std::shared_ptr<Attribute>;

/// A number, or a pair or triple whose children have the given endings ("XYZ", "RGB", "UV", "012").
AttributePtr NumericAttribute(const std::string& longName, const std::string& shortName,
                              MFnNumericData::Type type, double defaultValue = 0,
                              const char* endings = "012");
AttributePtr TypedAttribute(const std::string& longName, const std::string& shortName,
                            MFnData::Type type);
AttributePtr PlainAttribute(const std::string& longName, const std::string& shortName,
                            AttributeKind kind, double defaultValue = 0);
/// Three angles with children X, Y, Z.
AttributePtr RotationAttribute(const std::string& longName, const std::string& shortName);
AttributePtr EnumAttribute(const std::string& longName, const std::string& shortName,
                           std::vector<std::pair<std::string, int>> fields, int defaultValue = 0);

}  // namespace minihost
