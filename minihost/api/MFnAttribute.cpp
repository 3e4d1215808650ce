#include "maya/MFnAttribute.h"

#include "maya/MFnCompoundAttribute.h"
#include "maya/MFnEnumAttribute.h"
#include "maya/MFnGenericAttribute.h"
#include "maya/MFnMatrixAttribute.h"
#include "maya/MFnMessageAttribute.h"
#include "maya/MFnNumericAttribute.h"
#include "maya/MFnTypedAttribute.h"
#include "maya/MFnUnitAttribute.h"
#include "minihost/api/Status.h"
#include "minihost/base/Ticks.h"
#include "minihost/graph/Attribute.h"

using minihost::Attribute;
using minihost::AttributeKind;
using minihost::Tell;

MFnAttribute::MFnAttribute(const MObject& attribute, MStatus* status) {
    object_ = attribute.hasFn(MFn::kAttribute) ? attribute : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

Attribute* MFnAttribute::get() const {
    return object_.as<Attribute>();
}

MStatus MFnAttribute::Flag(bool Attribute::*flag, bool on) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    attribute->*flag = on;
    return MS::kSuccess;
}

bool MFnAttribute::Flag(bool Attribute::*flag, MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure) && attribute->*flag;
}

MObject MFnAttribute::Take(std::shared_ptr<minihost::Object> attribute, MStatus* status) {
    object_ = MObject(std::move(attribute));
    return Tell(status, MS::kSuccess, object_);
}

MString MFnAttribute::name(MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure) ? MString(attribute->longName)
                                                                 : MString();
}

MString MFnAttribute::shortName(MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure) ? MString(attribute->shortName)
                                                                 : MString();
}

MObject MFnAttribute::parent(MStatus* status) const {
    const Attribute* attribute = get();
    if (!Tell(status, attribute && attribute->parent ? MS::kSuccess : MS::kNotFound)) return {};
    return MObject(attribute->parent->shared_from_this());
}

bool MFnAttribute::isStorable(MStatus* s) const {
    return Flag(&Attribute::isStorable, s);
}
bool MFnAttribute::isKeyable(MStatus* s) const {
    return Flag(&Attribute::isKeyable, s);
}
bool MFnAttribute::isHidden(MStatus* s) const {
    return Flag(&Attribute::isHidden, s);
}
bool MFnAttribute::isArray(MStatus* s) const {
    return Flag(&Attribute::isArray, s);
}
bool MFnAttribute::isReadable(MStatus* s) const {
    return Flag(&Attribute::isReadable, s);
}
bool MFnAttribute::isWritable(MStatus* s) const {
    return Flag(&Attribute::isWritable, s);
}
MStatus MFnAttribute::setStorable(bool on) {
    return Flag(&Attribute::isStorable, on);
}
MStatus MFnAttribute::setKeyable(bool on) {
    return Flag(&Attribute::isKeyable, on);
}
MStatus MFnAttribute::setHidden(bool on) {
    return Flag(&Attribute::isHidden, on);
}
MStatus MFnAttribute::setArray(bool on) {
    return Flag(&Attribute::isArray, on);
}
MStatus MFnAttribute::setReadable(bool on) {
    return Flag(&Attribute::isReadable, on);
}
MStatus MFnAttribute::setWritable(bool on) {
    return Flag(&Attribute::isWritable, on);
}
MStatus MFnAttribute::setConnectable(bool on) {
    return Flag(&Attribute::isConnectable, on);
}
MStatus MFnAttribute::setCached(bool on) {
    return Flag(&Attribute::isCached, on);
}
MStatus MFnAttribute::setIndexMatters(bool on) {
    return Flag(&Attribute::indexMatters, on);
}
// Every array can grow during a compute.
MStatus MFnAttribute::setUsesArrayDataBuilder(bool) {
    return get() ? MS::kSuccess : MS::kFailure;
}

MFnAttribute::DisconnectBehavior MFnAttribute::disconnectBehavior(MStatus* status) const {
    const Attribute* attribute = get();
    if (!Tell(status, attribute ? MS::kSuccess : MS::kFailure)) return kNothing;
    return static_cast<DisconnectBehavior>(attribute->disconnect);
}

MStatus MFnAttribute::setDisconnectBehavior(DisconnectBehavior behavior) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    attribute->disconnect = static_cast<minihost::DisconnectBehavior>(behavior);
    return MS::kSuccess;
}

bool MFnAttribute::accepts(MFnData::Type type, MStatus* status) const {
    const Attribute* attribute = get();
    if (!Tell(status, attribute ? MS::kSuccess : MS::kFailure)) return false;
    for (const MFnData::Type accepted : attribute->acceptedData)
        if (accepted == type) return true;
    return attribute->kind == AttributeKind::Typed && attribute->dataType == type;
}

MObject MFnNumericAttribute::create(const MString& longName, const MString& shortName,
                                    MFnNumericData::Type unit, double defaultValue,
                                    MStatus* status) {
    return Take(minihost::NumericAttribute(longName.str(), shortName.str(), unit, defaultValue),
                status);
}

MObject MFnNumericAttribute::create(const MString& longName, const MString& shortName,
                                    const MObject& child1, const MObject& child2,
                                    const MObject& child3, MStatus* status) {
    const auto made =
        std::make_shared<Attribute>(longName.str(), shortName.str(), AttributeKind::Numeric);
    for (const MObject* child : {&child1, &child2, &child3})
        if (const auto* attribute = child->as<Attribute>(); attribute && !attribute->parent)
            made->AddChild(std::static_pointer_cast<Attribute>(child->object()));
    if (made->children.size() < 2) return Tell(status, MS::kInvalidParameter, MObject());
    const bool two = made->children.size() == 2;
    switch (made->children[0]->numeric) {
        case MFnNumericData::kFloat:
            made->numeric = two ? MFnNumericData::k2Float : MFnNumericData::k3Float;
            break;
        case MFnNumericData::kDouble:
            made->numeric = two ? MFnNumericData::k2Double : MFnNumericData::k3Double;
            break;
        default:
            made->numeric = two ? MFnNumericData::k2Int : MFnNumericData::k3Int;
    }
    return Take(made, status);
}

MObject MFnNumericAttribute::createColor(const MString& longName, const MString& shortName,
                                         MStatus* status) {
    return Take(minihost::NumericAttribute(longName.str(), shortName.str(), MFnNumericData::k3Float,
                                           0, "RGB"),
                status);
}

MObject MFnNumericAttribute::createPoint(const MString& longName, const MString& shortName,
                                         MStatus* status) {
    return Take(minihost::NumericAttribute(longName.str(), shortName.str(), MFnNumericData::k3Float,
                                           0, "XYZ"),
                status);
}

MFnNumericData::Type MFnNumericAttribute::unitType(MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure) ? attribute->numeric
                                                                 : MFnNumericData::kInvalid;
}

namespace {

MStatus SetDefaults(Attribute* attribute, std::initializer_list<double> values) {
    if (!attribute || attribute->children.size() != values.size()) return MS::kInvalidParameter;
    size_t i = 0;
    for (const double value : values) attribute->children[i++]->defaultValue = value;
    return MS::kSuccess;
}

}  // namespace

MStatus MFnNumericAttribute::setDefault(double value) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    minihost::Datum held = value;
    if (!attribute->Coerce(held)) return MS::kInvalidParameter;
    attribute->defaultValue = held;
    return MS::kSuccess;
}
MStatus MFnNumericAttribute::setDefault(double x, double y) {
    return SetDefaults(get(), {x, y});
}
MStatus MFnNumericAttribute::setDefault(double x, double y, double z) {
    return SetDefaults(get(), {x, y, z});
}

MStatus MFnNumericAttribute::getDefault(double& value) const {
    const Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    value = minihost::NumberOf(attribute->defaultValue);
    return MS::kSuccess;
}

MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName, Type unit,
                                 double defaultValue, MStatus* status) {
    if (unit == kTime)
        return create(longName, shortName, MTime(defaultValue, MTime::kSeconds), status);
    if (unit == kAngle) return create(longName, shortName, MAngle(defaultValue), status);
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Distance,
                                         defaultValue),
                status);
}

MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName,
                                 const MTime& defaultValue, MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Time,
                                         minihost::ToTicks(defaultValue)),
                status);
}

MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName,
                                 const MAngle& defaultValue, MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Angle,
                                         defaultValue.asRadians()),
                status);
}

MFnUnitAttribute::Type MFnUnitAttribute::unitType(MStatus* status) const {
    const Attribute* attribute = get();
    Tell(status, attribute ? MS::kSuccess : MS::kFailure);
    if (!attribute) return kInvalid;
    if (attribute->kind == AttributeKind::Time) return kTime;
    return attribute->kind == AttributeKind::Angle ? kAngle : kDistance;
}

MObject MFnTypedAttribute::create(const MString& longName, const MString& shortName,
                                  MFnData::Type dataType, MStatus* status) {
    return Take(minihost::TypedAttribute(longName.str(), shortName.str(), dataType), status);
}

MObject MFnTypedAttribute::create(const MString& longName, const MString& shortName,
                                  MFnData::Type dataType, const MObject& defaultData,
                                  MStatus* status) {
    const auto made = minihost::TypedAttribute(longName.str(), shortName.str(), dataType);
    if (auto* data = defaultData.as<minihost::Data>(); data && made->AcceptsData(*data))
        made->defaultValue = std::static_pointer_cast<minihost::Data>(defaultData.object());
    return Take(made, status);
}

MObject MFnTypedAttribute::create(const MString& longName, const MString& shortName,
                                  const MTypeId& dataType, MStatus* status) {
    const auto made = minihost::TypedAttribute(longName.str(), shortName.str(), MFnData::kPlugin);
    made->dataTypeId = dataType;
    return Take(made, status);
}

MFnData::Type MFnTypedAttribute::attrType(MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure) ? attribute->dataType
                                                                 : MFnData::kInvalid;
}

MTypeId MFnTypedAttribute::pluginDataType() const {
    const Attribute* attribute = get();
    return attribute ? attribute->dataTypeId : MTypeId();
}

MObject MFnMatrixAttribute::create(const MString& longName, const MString& shortName, Type,
                                   MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Matrix),
                status);
}

MObject MFnGenericAttribute::create(const MString& longName, const MString& shortName,
                                    MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Generic),
                status);
}

MStatus MFnGenericAttribute::addAccept(MFnData::Type type) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    attribute->acceptedData.push_back(type);
    return MS::kSuccess;
}

MStatus MFnGenericAttribute::addAccept(MFnNumericData::Type type) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    attribute->acceptedNumeric.push_back(type);
    return MS::kSuccess;
}

MObject MFnCompoundAttribute::create(const MString& longName, const MString& shortName,
                                     MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Compound),
                status);
}

MStatus MFnCompoundAttribute::addChild(const MObject& child) {
    Attribute* attribute = get();
    const auto* part = child.as<Attribute>();
    if (!attribute || !part || part->parent || part == attribute) return MS::kInvalidParameter;
    attribute->AddChild(std::static_pointer_cast<Attribute>(child.object()));
    return MS::kSuccess;
}

unsigned MFnCompoundAttribute::numChildren(MStatus* status) const {
    const Attribute* attribute = get();
    return Tell(status, attribute ? MS::kSuccess : MS::kFailure)
               ? static_cast<unsigned>(attribute->children.size())
               : 0;
}

MObject MFnCompoundAttribute::child(unsigned index, MStatus* status) const {
    const Attribute* attribute = get();
    const bool is = attribute && index < attribute->children.size();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MObject(attribute->children[index])
               : MObject();
}

MObject MFnEnumAttribute::create(const MString& longName, const MString& shortName,
                                 short defaultValue, MStatus* status) {
    return Take(minihost::EnumAttribute(longName.str(), shortName.str(), {}, defaultValue), status);
}

MStatus MFnEnumAttribute::addField(const MString& name, short value) {
    Attribute* attribute = get();
    if (!attribute) return MS::kFailure;
    attribute->fields.emplace_back(name.str(), value);
    return MS::kSuccess;
}

MString MFnEnumAttribute::fieldName(short value, MStatus* status) const {
    if (const Attribute* attribute = get())
        for (const auto& [name, number] : attribute->fields)
            if (number == value) return Tell(status, MS::kSuccess, MString(name));
    return Tell(status, MS::kInvalidParameter, MString());
}

MObject MFnMessageAttribute::create(const MString& longName, const MString& shortName,
                                    MStatus* status) {
    return Take(minihost::PlainAttribute(longName.str(), shortName.str(), AttributeKind::Message),
                status);
}
