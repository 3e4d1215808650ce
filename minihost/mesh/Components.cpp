#include <algorithm>

#include "maya/MFnComponentListData.h"
#include "maya/MFnSingleIndexedComponent.h"
#include "minihost/api/Status.h"
#include "minihost/mesh/ComponentObject.h"

using minihost::Component;
using minihost::ComponentListData;
using minihost::ComponentObject;
using minihost::Tell;

MFnComponent::MFnComponent(const MObject& component, MStatus* status) {
    Tell(status, setObject(component));
}

Component* MFnComponent::component() const {
    auto* object = object_.as<ComponentObject>();
    return object ? &object->component : nullptr;
}

MFn::Type MFnComponent::componentType(MStatus* status) const {
    const Component* c = component();
    Tell(status, c ? MS::kSuccess : MS::kInvalidParameter);
    return c ? c->kind : MFn::kInvalid;
}

int MFnComponent::elementCount(MStatus* status) const {
    const Component* c = component();
    Tell(status, c ? MS::kSuccess : MS::kInvalidParameter);
    return c ? static_cast<int>(c->elements.size()) : 0;
}

bool MFnComponent::isComplete(MStatus* status) const {
    const Component* c = component();
    Tell(status, c ? MS::kSuccess : MS::kInvalidParameter);
    return c && c->complete;
}

bool MFnComponent::isEqual(const MObject& other, MStatus* status) const {
    const auto *a = component(), *b = MFnComponent(other).component();
    Tell(status, a && b ? MS::kSuccess : MS::kInvalidParameter);
    return a && b && *a == *b;
}

MFnSingleIndexedComponent::MFnSingleIndexedComponent(const MObject& component, MStatus* status) {
    Tell(status, setObject(component));
}

MObject MFnSingleIndexedComponent::create(MFn::Type kind, MStatus* status) {
    const bool known = kind != MFn::kSingleIndexedComponent && MFn::Is(kind, type());
    object_ = known ? minihost::MakeComponent({kind, false, {}}) : MObject();
    Tell(status, known ? MS::kSuccess : MS::kInvalidParameter);
    return object_;
}

MStatus MFnSingleIndexedComponent::addElement(int element) {
    Component* c = component();
    if (!c || element < 0) return MS::kInvalidParameter;
    auto& all = c->elements;
    const auto at = std::ranges::lower_bound(all, element);
    if (at == all.end() || *at != element) all.insert(at, element);
    return MS::kSuccess;
}

MStatus MFnSingleIndexedComponent::addElements(const MIntArray& elements) {
    Component* c = component();
    if (!c || std::any_of(elements.begin(), elements.end(), [](int e) { return e < 0; }))
        return MS::kInvalidParameter;
    auto& all = c->elements;
    all.insert(all.end(), elements.begin(), elements.end());
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return MS::kSuccess;
}

int MFnSingleIndexedComponent::element(int place, MStatus* status) const {
    const Component* c = component();
    const bool there = c && place >= 0 && static_cast<size_t>(place) < c->elements.size();
    Tell(status, there ? MS::kSuccess : MS::kInvalidParameter);
    return there ? c->elements[static_cast<size_t>(place)] : -1;
}

MStatus MFnSingleIndexedComponent::getElements(MIntArray& elements) const {
    const Component* c = component();
    if (!c) return MS::kInvalidParameter;
    elements = MIntArray(c->elements.data(), static_cast<unsigned>(c->elements.size()));
    return MS::kSuccess;
}

MStatus MFnSingleIndexedComponent::setCompleteData(int count) {
    Component* c = component();
    if (!c || count < 0) return MS::kInvalidParameter;
    c->elements.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) c->elements[static_cast<size_t>(i)] = i;
    c->complete = true;
    return MS::kSuccess;
}

MStatus MFnSingleIndexedComponent::getCompleteData(int& count) const {
    const Component* c = component();
    if (!c || !c->complete) return MS::kFailure;
    count = static_cast<int>(c->elements.size());
    return MS::kSuccess;
}

MFnComponentListData::MFnComponentListData(const MObject& data, MStatus* status) {
    Tell(status, setObject(data));
}

MObject MFnComponentListData::create(MStatus* status) {
    object_ = MObject(std::make_shared<ComponentListData>());
    Tell(status, MS::kSuccess);
    return object_;
}

unsigned MFnComponentListData::length(MStatus* status) const {
    const auto* list = object_.as<ComponentListData>();
    Tell(status, list ? MS::kSuccess : MS::kInvalidParameter);
    return list ? static_cast<unsigned>(list->value.size()) : 0;
}

MObject MFnComponentListData::operator[](unsigned i) const {
    const auto* list = object_.as<ComponentListData>();
    if (!list || i >= list->value.size()) return {};
    return minihost::MakeComponent(list->value[i]);
}

bool MFnComponentListData::has(const MObject& component, MStatus* status) const {
    const auto* list = object_.as<ComponentListData>();
    const auto* wanted = component.as<ComponentObject>();
    Tell(status, list && wanted ? MS::kSuccess : MS::kInvalidParameter);
    return list && wanted && std::ranges::count(list->value, wanted->component) > 0;
}

MStatus MFnComponentListData::add(const MObject& component) {
    auto* list = object_.as<ComponentListData>();
    const auto* added = component.as<ComponentObject>();
    if (!list || !added) return MS::kInvalidParameter;
    list->value.push_back(added->component);
    return MS::kSuccess;
}

MStatus MFnComponentListData::remove(unsigned i) {
    auto* list = object_.as<ComponentListData>();
    if (!list || i >= list->value.size()) return MS::kInvalidParameter;
    list->value.erase(list->value.begin() + i);
    return MS::kSuccess;
}

MStatus MFnComponentListData::clear() {
    auto* list = object_.as<ComponentListData>();
    if (!list) return MS::kInvalidParameter;
    list->value.clear();
    return MS::kSuccess;
}
