#include "maya/MPlug.h"

#include <algorithm>

#include "maya/MAngle.h"
#include "maya/MDataHandle.h"
#include "maya/MIntArray.h"
#include "maya/MPlugArray.h"
#include "minihost/api/Status.h"
#include "minihost/base/Ticks.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"
#include "minihost/graph/Scene.h"

using minihost::Attribute;
using minihost::Datum;
using minihost::Plug;
using minihost::Slot;
using minihost::StringData;
using minihost::Tell;

namespace {

MObject ObjectOf(const Attribute* attribute) {
    return MObject(std::const_pointer_cast<minihost::Object>(attribute->shared_from_this()));
}

}  // namespace

MPlug::MPlug(const MObject& node, const MObject& attribute) {
    auto* owner = node.as<minihost::Node>();
    if (owner && attribute.as<Attribute>()) plug_ = Plug(owner->Share(), attribute.as<Attribute>());
}

bool MPlug::Check(MStatus* status) const {
    return Tell(status, isNull() ? MS::kFailure : MS::kSuccess);
}

MObject MPlug::node(MStatus* status) const {
    return Check(status) ? MObject(plug_.node) : MObject();
}

MObject MPlug::attribute(MStatus* status) const {
    return Check(status) ? ObjectOf(plug_.attribute) : MObject();
}

bool MPlug::operator==(const MObject& attribute) const {
    return !isNull() && attribute.object().get() == plug_.attribute;
}

MString MPlug::name(MStatus* status) const {
    return Check(status) ? MString(plug_.FullName()) : MString();
}

MString MPlug::partialName(bool includeNodeName, bool, bool, bool, bool fullPath, bool longNames,
                           MStatus* status) const {
    if (!Check(status)) return {};
    const std::string name = plug_.Name(fullPath, !longNames);
    return includeNodeName ? plug_.node->UniqueName() + "." + name : name;
}

bool MPlug::isCompound(MStatus* status) const {
    return Check(status) && plug_.attribute->IsCompound() && !plug_.IsArray();
}

bool MPlug::isChild(MStatus* status) const {
    return Check(status) && plug_.attribute->parent;
}

bool MPlug::isDestination() const {
    const Slot* slot = plug_.Find();
    return slot && slot->IsFed();
}

bool MPlug::isSource() const {
    const Slot* slot = plug_.Find();
    return slot && !slot->destinations.empty();
}

bool MPlug::isConnected(MStatus* status) const {
    return Check(status) && (isDestination() || isSource());
}

MPlug MPlug::parent(MStatus* status) const {
    if (!Check(status)) return {};
    Plug up = plug_;
    if (up.IsElement()) up = up.Parent();
    return Tell(status, up.attribute->parent ? MS::kSuccess : MS::kFailure, MPlug(up.Parent()));
}

MPlug MPlug::array(MStatus* status) const {
    const bool is = Tell(status, plug_.IsElement() ? MS::kSuccess : MS::kInvalidParameter);
    return is ? MPlug(plug_.Parent()) : MPlug();
}

MPlug MPlug::child(unsigned index, MStatus* status) const {
    const bool is = !isNull() && index < plug_.attribute->children.size();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MPlug(plug_.Child(static_cast<int>(index)))
               : MPlug();
}

MPlug MPlug::child(const MObject& attribute, MStatus* status) const {
    const auto* wanted = attribute.as<Attribute>();
    const bool is = wanted && wanted->parent == plug_.attribute;
    return is ? child(static_cast<unsigned>(wanted->place), status)
              : Tell(status, MS::kInvalidParameter, MPlug());
}

unsigned MPlug::numChildren(MStatus* status) const {
    return Check(status) ? static_cast<unsigned>(plug_.attribute->children.size()) : 0;
}

unsigned MPlug::numElements(MStatus* status) const {
    if (!Tell(status, plug_.IsArray() ? MS::kSuccess : MS::kFailure)) return 0;
    const Slot* slot = plug_.Find();
    return slot ? static_cast<unsigned>(slot->parts.size()) : 0;
}

unsigned MPlug::numConnectedElements(MStatus* status) const {
    if (!Check(status)) return 0;
    const Slot* slot = plug_.Find();
    if (!slot) return 0;
    return static_cast<unsigned>(std::ranges::count_if(slot->parts, [](const auto& part) {
        return part->IsFed() || !part->destinations.empty();
    }));
}

MStatus MPlug::setNumElements(unsigned count) {
    Slot* array = plug_.IsArray() ? plug_.Make() : nullptr;
    if (!array) return MS::kFailure;
    minihost::PropagationGuard guard;
    const int length = static_cast<int>(count);
    for (size_t i = array->parts.size(); i-- > 0;) {
        Slot& element = *array->parts[i];
        if (element.index < length) break;
        if (element.source || !element.destinations.empty()) continue;
        minihost::PropagationGuard::Bury(plug_.node->scene().TakeElement(element));
    }
    for (int i = 0; i < length; ++i) array->Element(i);
    return MS::kSuccess;
}

MPlug MPlug::elementByLogicalIndex(unsigned index, MStatus* status) const {
    const bool is = plug_.IsArray() && index < 0x7fffffffu;
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MPlug(plug_.Element(static_cast<int>(index)))
               : MPlug();
}

MPlug MPlug::elementByPhysicalIndex(unsigned place, MStatus* status) const {
    const Slot* array = plug_.IsArray() ? plug_.Find() : nullptr;
    const bool is = array && place < array->parts.size();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MPlug(plug_.Element(array->parts[place]->index))
               : MPlug();
}

MPlug MPlug::connectionByPhysicalIndex(unsigned place, MStatus* status) const {
    if (const Slot* slot = plug_.Find())
        for (const auto& part : slot->parts)
            if ((part->IsFed() || !part->destinations.empty()) && place-- == 0)
                return Tell(status, MS::kSuccess, MPlug(Plug(*part)));
    return Tell(status, MS::kInvalidParameter, MPlug());
}

unsigned MPlug::logicalIndex(MStatus* status) const {
    const bool is = Tell(status, plug_.IsElement() ? MS::kSuccess : MS::kInvalidParameter);
    return is ? static_cast<unsigned>(plug_.LogicalIndex()) : 0;
}

unsigned MPlug::getExistingArrayAttributeIndices(MIntArray& indices, MStatus* status) const {
    indices.clear();
    const Slot* array = plug_.IsArray() ? plug_.Find() : nullptr;
    Tell(status, plug_.IsArray() ? MS::kSuccess : MS::kInvalidParameter);
    if (!array) return 0;
    for (const auto& element : array->parts) indices.append(element->index);
    return indices.length();
}

MPlug MPlug::selectAncestorLogicalIndex(unsigned index, const MObject& attribute) const {
    const auto* wanted = attribute.as<Attribute>();
    if (isNull() || !wanted || !wanted->isArray) return *this;
    Plug plug = plug_;
    const int place = wanted->ArrayDepth() - 1;
    if (place >= Plug::kMaxDepth) return *this;
    plug.indices[static_cast<size_t>(place)] = static_cast<int>(index);
    plug.depth = std::max(plug.depth, place + 1);
    return MPlug(plug);
}

bool MPlug::connectedTo(MPlugArray& plugs, bool asDst, bool asSrc, MStatus* status) const {
    plugs.clear();
    if (!Check(status)) return false;
    const Slot* slot = plug_.Find();
    if (!slot) return false;
    if (asDst && slot->source) plugs.append(MPlug(Plug(*slot->source)));
    if (asSrc)
        for (const Slot* target : slot->destinations) plugs.append(MPlug(Plug(*target)));
    return plugs.length() > 0;
}

MPlug MPlug::source(MStatus* status) const {
    const Slot* slot = Check(status) ? plug_.Find() : nullptr;
    return slot && slot->source ? MPlug(Plug(*slot->source)) : MPlug();
}

MStatus MPlug::Get(Datum& value) const {
    if (isNull() || plug_.IsArray()) return MS::kInvalidParameter;
    Slot* slot = plug_.FindToRead();
    if (!slot) {  // an element that is not there has the attribute's default
        value = plug_.attribute->defaultValue;
        return MS::kSuccess;
    }
    if (!slot->IsLeaf()) return MS::kInvalidParameter;
    const MStatus status = minihost::Evaluate(*slot);
    value = slot->value;
    return status;
}

template <class T>
MStatus MPlug::GetNumber(T& value) const {
    Datum held;
    const MStatus status = Get(held);
    if (status == MS::kInvalidParameter || !std::holds_alternative<double>(held))
        return MS::kInvalidParameter;
    value = static_cast<T>(std::get<double>(held));
    return status;
}

MStatus MPlug::getValue(bool& value) const {
    double number = 0;
    const MStatus status = GetNumber(number);
    if (status != MS::kInvalidParameter) value = number != 0;
    return status;
}
MStatus MPlug::getValue(char& value) const {
    return GetNumber(value);
}
MStatus MPlug::getValue(short& value) const {
    return GetNumber(value);
}
MStatus MPlug::getValue(int& value) const {
    return GetNumber(value);
}
MStatus MPlug::getValue(float& value) const {
    return GetNumber(value);
}
MStatus MPlug::getValue(double& value) const {
    return GetNumber(value);
}

MStatus MPlug::getValue(MString& value) const {
    Datum held;
    const MStatus status = Get(held);
    if (status == MS::kInvalidParameter) return status;
    const auto text = minihost::DataOf<StringData>(held);
    if (!text && !std::holds_alternative<std::monostate>(held)) return MS::kInvalidParameter;
    value = text ? MString(text->value) : MString();
    return status;
}

MStatus MPlug::getValue(MTime& value) const {
    double ticks = 0;
    const MStatus status = GetNumber(ticks);
    if (status != MS::kInvalidParameter) value = minihost::FromTicks(ticks);
    return status;
}

MStatus MPlug::getValue(MAngle& value) const {
    double radians = 0;
    const MStatus status = GetNumber(radians);
    if (status != MS::kInvalidParameter) value = MAngle(radians);
    return status;
}

MStatus MPlug::getValue(MObject& value) const {
    Datum held;
    MStatus status = Get(held);
    const auto* data = std::get_if<std::shared_ptr<minihost::Data>>(&held);
    if (data)
        value = MObject(*data);
    else
        value = MObject();
    if (!data && status) status = MS::kFailure;
    return status;
}

bool MPlug::asBool() const {
    return asDouble() != 0;
}
int MPlug::asInt() const {
    int value = 0;
    getValue(value);
    return value;
}
float MPlug::asFloat() const {
    return static_cast<float>(asDouble());
}
double MPlug::asDouble() const {
    double value = 0;
    getValue(value);
    return value;
}
MString MPlug::asString() const {
    MString value;
    getValue(value);
    return value;
}
MTime MPlug::asMTime() const {
    MTime value;
    getValue(value);
    return value;
}
MObject MPlug::asMObject(MStatus* status) const {
    MObject value;
    const MStatus done = getValue(value);
    return Tell(status, done, value);
}

MStatus MPlug::Set(Datum value) {
    Slot* slot = plug_.Make();
    return slot ? minihost::Write(*slot, std::move(value)) : MS::kInvalidParameter;
}

MStatus MPlug::setValue(const MString& value) {
    return Set(std::make_shared<StringData>(value.str()));
}
MStatus MPlug::setValue(const MTime& value) {
    return Set(minihost::ToTicks(value));
}
MStatus MPlug::setValue(const MAngle& value) {
    return Set(value.asRadians());
}

MStatus MPlug::setValue(const MObject& data) {
    if (data.isNull()) return Set(std::shared_ptr<minihost::Data>());
    if (!data.hasFn(MFn::kData)) return MS::kInvalidParameter;
    const auto held = std::static_pointer_cast<minihost::Data>(data.object());
    const auto* tuple = data.as<minihost::NumericData>();
    if (tuple && !isNull() && plug_.attribute->IsCompound()) {
        Slot* slot = plug_.Make();
        return slot ? minihost::WriteNumbers(*slot, tuple->value.numbers,
                                             MFnNumericData::Count(tuple->value.kind))
                    : MS::kInvalidParameter;
    }
    return Set(held);
}

MStatus MPlug::setValue(const MDataHandle& handle) {
    return handle.slot() && handle.slot()->IsLeaf() ? Set(handle.slot()->value)
                                                    : MS::kInvalidParameter;
}
