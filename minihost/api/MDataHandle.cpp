#include "maya/MDataHandle.h"

#include "minihost/base/Ticks.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/plugin/PluginData.h"

using minihost::MatrixData;
using minihost::Slot;
using minihost::StringData;

double MDataHandle::Number() const {
    return slot_ ? minihost::NumberOf(slot_->value) : 0;
}

void MDataHandle::Put(minihost::Datum value) {
    if (slot_ && slot_->IsLeaf()) minihost::SetResult(*slot_, std::move(value));
}

void MDataHandle::PutNumbers(std::initializer_list<double> numbers) {
    if (!slot_ || slot_->parts.size() != numbers.size()) return;
    size_t i = 0;
    for (const double n : numbers) minihost::SetResult(*slot_->parts[i++], n);
}

MTime MDataHandle::asTime() const {
    return minihost::FromTicks(Number());
}

MVector MDataHandle::asVector() const {
    MVector v;
    for (unsigned i = 0; slot_ && i < 3 && i < slot_->parts.size(); ++i)
        v[i] = minihost::NumberOf(slot_->parts[i]->value);
    return v;
}

MFloatVector MDataHandle::asFloatVector() const {
    const MVector v = asVector();
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

MString MDataHandle::asString() const {
    const auto text = slot_ ? minihost::DataOf<StringData>(slot_->value) : nullptr;
    return text ? MString(text->value) : MString();
}

MMatrix MDataHandle::asMatrix() const {
    const auto matrix = slot_ ? minihost::DataOf<MatrixData>(slot_->value) : nullptr;
    return matrix ? matrix->value : MMatrix();
}

MPxData* MDataHandle::asPluginData() const {
    const auto data = slot_ ? minihost::DataOf<minihost::PluginData>(slot_->value) : nullptr;
    return data ? data->get() : nullptr;
}

MObject MDataHandle::data() const {
    const auto data = slot_ ? minihost::DataOf<minihost::Data>(slot_->value) : nullptr;
    return MObject(data);
}

void MDataHandle::set(const MTime& value) {
    Put(minihost::ToTicks(value));
}
void MDataHandle::set(const MString& value) {
    Put(std::make_shared<StringData>(value.str()));
}
void MDataHandle::set(const MMatrix& value) {
    Put(std::make_shared<MatrixData>(value));
}

MStatus MDataHandle::set(const MObject& data) {
    if (!slot_ || !slot_->IsLeaf() || (!data.isNull() && !data.hasFn(MFn::kData)))
        return MS::kInvalidParameter;
    const auto held = std::static_pointer_cast<minihost::Data>(data.object());
    if (held && !slot_->attribute->AcceptsData(*held)) return MS::kInvalidParameter;
    Put(held);
    return MS::kSuccess;
}

MStatus MDataHandle::set(MPxData* data) {
    if (!slot_ || !data) return MS::kInvalidParameter;
    Put(std::make_shared<minihost::PluginData>(std::unique_ptr<MPxData>(data)));
    return MS::kSuccess;
}

namespace {

MStatus CopySlot(Slot& to, const Slot& from) {
    if (to.IsLeaf() && from.IsLeaf()) {
        // Geometry is a copy of its own: who copies it goes on to change it in place.
        const auto data = minihost::DataOf<minihost::Data>(from.value);
        const bool isGeometry = data && data->dataType() == MFnData::kMesh;
        minihost::SetResult(to, isGeometry ? minihost::Datum(data->Copy()) : from.value);
        return MS::kSuccess;
    }
    if (to.IsArray() || from.IsArray() || to.parts.size() != from.parts.size())
        return MS::kInvalidParameter;
    MStatus status;
    for (size_t i = 0; i < to.parts.size() && status; ++i)
        status = CopySlot(*to.parts[i], *from.parts[i]);
    return status;
}

}  // namespace

MStatus MDataHandle::copy(const MDataHandle& other) {
    return slot_ && other.slot_ ? CopySlot(*slot_, *other.slot_) : MS::kInvalidParameter;
}

MDataHandle MDataHandle::child(const MObject& attribute) const {
    const auto* wanted = attribute.as<minihost::Attribute>();
    if (!slot_ || !wanted || wanted->parent != slot_->attribute || slot_->IsArray()) return {};
    return MDataHandle(slot_->parts[static_cast<size_t>(wanted->place)].get());
}

MObject MDataHandle::attribute() const {
    return slot_ ? MObject(std::const_pointer_cast<minihost::Object>(
                       slot_->attribute->shared_from_this()))
                 : MObject();
}
