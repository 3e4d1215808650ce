#include "maya/MDataBlock.h"

#include "minihost/api/Status.h"
#include "minihost/graph/Evaluation.h"

using minihost::Slot;
using minihost::Tell;

namespace {

MDataHandle Handle(Slot* slot, bool evaluate, MStatus* status) {
    const MStatus found = !slot      ? MS::kInvalidParameter
                          : evaluate ? minihost::Evaluate(*slot)
                                     : MStatus(MS::kSuccess);
    return Tell(status, found, MDataHandle(slot));
}

MArrayDataHandle ArrayHandle(Slot* slot, MStatus* status) {
    const bool is = slot && slot->IsArray();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter) ? MArrayDataHandle(slot)
                                                                   : MArrayDataHandle();
}

}  // namespace

Slot* MDataBlock::SlotOf(const MObject& attribute, MStatus* status) const {
    const auto* wanted = attribute.as<minihost::Attribute>();
    Slot* slot = wanted ? minihost::Plug(node_->Share(), wanted).Find() : nullptr;
    Tell(status, slot ? MS::kSuccess : MS::kInvalidParameter);
    return slot;
}

MDataHandle MDataBlock::inputValue(const MPlug& plug, MStatus* status) {
    return Handle(plug.plug().Make(), true, status);
}
MDataHandle MDataBlock::inputValue(const MObject& attribute, MStatus* status) {
    return Handle(SlotOf(attribute, status), true, status);
}
MDataHandle MDataBlock::outputValue(const MPlug& plug, MStatus* status) {
    return Handle(plug.plug().Make(), false, status);
}
MDataHandle MDataBlock::outputValue(const MObject& attribute, MStatus* status) {
    return Handle(SlotOf(attribute, status), false, status);
}
MArrayDataHandle MDataBlock::inputArrayValue(const MPlug& plug, MStatus* status) {
    return ArrayHandle(plug.plug().Make(), status);
}
MArrayDataHandle MDataBlock::inputArrayValue(const MObject& attribute, MStatus* status) {
    return ArrayHandle(SlotOf(attribute, status), status);
}
MArrayDataHandle MDataBlock::outputArrayValue(const MPlug& plug, MStatus* status) {
    return inputArrayValue(plug, status);
}
MArrayDataHandle MDataBlock::outputArrayValue(const MObject& attribute, MStatus* status) {
    return inputArrayValue(attribute, status);
}

bool MDataBlock::isClean(const MPlug& plug) const {
    Slot* slot = plug.plug().Find();
    bool clean = slot != nullptr;
    if (slot) slot->ForEachLeaf([&clean](const Slot& leaf) { clean &= !leaf.dirty; });
    return clean;
}

MStatus MDataBlock::setClean(const MPlug& plug) {
    Slot* slot = plug.plug().Find();
    if (slot) slot->SetClean();
    return slot ? MS::kSuccess : MS::kInvalidParameter;
}

MStatus MDataBlock::setClean(const MObject& attribute) {
    MStatus status;
    if (Slot* slot = SlotOf(attribute, &status)) slot->SetClean();
    return status;
}

MArrayDataHandle::MArrayDataHandle(const MDataHandle& array, MStatus* status) {
    const bool is = array.slot() && array.slot()->IsArray();
    if (Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)) array_ = array.slot();
}

Slot* MArrayDataHandle::At() const {
    return array_ && place_ < array_->parts.size() ? array_->parts[place_].get() : nullptr;
}

unsigned MArrayDataHandle::elementCount() const {
    return array_ ? static_cast<unsigned>(array_->parts.size()) : 0;
}

unsigned MArrayDataHandle::elementIndex(MStatus* status) const {
    const Slot* at = At();
    return Tell(status, at ? MS::kSuccess : MS::kFailure,
                at ? static_cast<unsigned>(at->index) : 0);
}

MStatus MArrayDataHandle::next() {
    if (place_ + 1 >= elementCount()) return MS::kFailure;
    ++place_;
    return MS::kSuccess;
}

MStatus MArrayDataHandle::jumpToElement(unsigned logicalIndex) {
    const Slot* element = array_ ? array_->FindElement(static_cast<int>(logicalIndex)) : nullptr;
    if (!element) return MS::kFailure;
    place_ = static_cast<unsigned>(element->PlaceInParent());
    return MS::kSuccess;
}

MStatus MArrayDataHandle::jumpToArrayElement(unsigned place) {
    if (place >= elementCount()) return MS::kFailure;
    place_ = place;
    return MS::kSuccess;
}

MDataHandle MArrayDataHandle::inputValue(MStatus* status) const {
    return Handle(At(), true, status);
}
MDataHandle MArrayDataHandle::outputValue(MStatus* status) const {
    return Handle(At(), false, status);
}

MArrayDataBuilder MArrayDataHandle::builder(MStatus* status) const {
    Tell(status, array_ ? MS::kSuccess : MS::kFailure);
    return MArrayDataBuilder(array_);
}

MStatus MArrayDataHandle::set(const MArrayDataBuilder& builder) {
    return builder.array() && builder.array() == array_ ? MS::kSuccess : MS::kInvalidParameter;
}

MStatus MArrayDataHandle::setAllClean() {
    if (!array_) return MS::kFailure;
    array_->SetClean();
    return MS::kSuccess;
}

MStatus MArrayDataHandle::setClean() {
    Slot* at = At();
    if (!at) return MS::kFailure;
    at->SetClean();
    return MS::kSuccess;
}

MArrayDataBuilder::MArrayDataBuilder(MDataBlock* block, const MObject& attribute, unsigned,
                                     MStatus* status) {
    const auto* wanted = attribute.as<minihost::Attribute>();
    Slot* slot = block && wanted ? minihost::Plug(block->node().Share(), wanted).Find() : nullptr;
    if (Tell(status, slot && slot->IsArray() ? MS::kSuccess : MS::kInvalidParameter)) array_ = slot;
}

MDataHandle MArrayDataBuilder::addElement(unsigned index, MStatus* status) {
    const bool can = array_ && index < 0x7fffffffu;
    return Tell(status, can ? MS::kSuccess : MS::kFailure)
               ? MDataHandle(array_->Element(static_cast<int>(index)))
               : MDataHandle();
}

MDataHandle MArrayDataBuilder::addLast(MStatus* status) {
    const bool any = array_ && !array_->parts.empty();
    return addElement(any ? static_cast<unsigned>(array_->parts.back()->index) + 1 : 0, status);
}

MStatus MArrayDataBuilder::removeElement(unsigned index) {
    Slot* element = array_ ? array_->FindElement(static_cast<int>(index)) : nullptr;
    if (!element) return MS::kFailure;
    bool connected = element->source || !element->destinations.empty();
    element->ForEachLeaf(
        [&](const Slot& leaf) { connected |= leaf.source || !leaf.destinations.empty(); });
    if (connected) return MS::kFailure;
    const auto at = array_->parts.begin() + element->PlaceInParent();
    minihost::PropagationGuard::Bury(std::move(*at));
    array_->parts.erase(at);
    return MS::kSuccess;
}

unsigned MArrayDataBuilder::elementCount() const {
    return array_ ? static_cast<unsigned>(array_->parts.size()) : 0;
}
