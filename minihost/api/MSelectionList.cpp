#include "maya/MSelectionList.h"

#include "maya/MItSelectionList.h"
#include "maya/MStringArray.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Names.h"
#include "minihost/mesh/ComponentObject.h"

using minihost::Host;
using minihost::Tell;

MStatus MSelectionList::add(const MString& name, bool) {
    const auto found = minihost::FindNamed(Host::Get().scene, name.str());
    for (const minihost::Named& named : found)
        items_.push_back(
            {MObject(named.node),
             named.HasComponent() ? minihost::MakeComponent(named.component) : MObject(),
             MPlug(named.plug)});
    return found.empty() ? MS::kInvalidParameter : MS::kSuccess;
}

MStatus MSelectionList::add(const MObject& node) {
    if (!node.hasFn(MFn::kDependencyNode)) return MS::kInvalidParameter;
    items_.push_back({node, MObject(), MPlug()});
    return MS::kSuccess;
}

MStatus MSelectionList::add(const MDagPath& path, const MObject& component) {
    if (!path.isValid() || (!component.isNull() && !component.hasFn(MFn::kComponent)))
        return MS::kInvalidParameter;
    items_.push_back({path.node(), component, MPlug()});
    return MS::kSuccess;
}

MStatus MSelectionList::add(const MPlug& plug) {
    if (plug.isNull()) return MS::kInvalidParameter;
    items_.push_back({plug.node(), MObject(), plug});
    return MS::kSuccess;
}

MStatus MSelectionList::clear() {
    items_.clear();
    return MS::kSuccess;
}

MStatus MSelectionList::remove(unsigned index) {
    if (index >= items_.size()) return MS::kInvalidParameter;
    items_.erase(items_.begin() + index);
    return MS::kSuccess;
}

unsigned MSelectionList::length(MStatus* status) const {
    return Tell(status, MS::kSuccess, static_cast<unsigned>(items_.size()));
}

MStatus MSelectionList::getDependNode(unsigned index, MObject& node) const {
    if (index >= items_.size()) return MS::kInvalidParameter;
    node = items_[index].node;
    return MS::kSuccess;
}

MStatus MSelectionList::getDagPath(unsigned index, MDagPath& path) const {
    return index < items_.size() ? MDagPath::getAPathTo(items_[index].node, path)
                                 : MS::kInvalidParameter;
}

MStatus MSelectionList::getDagPath(unsigned index, MDagPath& path, MObject& component) const {
    const MStatus status = getDagPath(index, path);
    if (status) component = items_[index].component;
    return status;
}

MStatus MSelectionList::getPlug(unsigned index, MPlug& plug) const {
    if (index >= items_.size() || items_[index].plug.isNull()) return MS::kInvalidParameter;
    plug = items_[index].plug;
    return MS::kSuccess;
}

MStatus MSelectionList::getSelectionStrings(unsigned index, MStringArray& names) const {
    names.clear();
    if (index >= items_.size()) return MS::kInvalidParameter;
    const Item& item = items_[index];
    const auto& node = *item.node.as<minihost::Node>();
    if (const auto* component = item.component.as<minihost::ComponentObject>()) {
        for (const std::string& name : minihost::ComponentNames(node, component->component))
            names.append(MString(name));
    } else {
        names.append(item.plug.isNull() ? MString(node.UniqueName()) : item.plug.name());
    }
    return MS::kSuccess;
}

MStatus MSelectionList::getSelectionStrings(MStringArray& names) const {
    names.clear();
    for (unsigned i = 0; i < items_.size(); ++i) {
        MStringArray one;
        getSelectionStrings(i, one);
        for (const MString& name : one) names.append(name);
    }
    return MS::kSuccess;
}

bool MSelectionList::hasItem(const MObject& node, MStatus* status) const {
    Tell(status, MS::kSuccess);
    for (const Item& item : items_)
        if (item.node == node) return true;
    return false;
}

MItSelectionList::MItSelectionList(const MSelectionList& list, MFn::Type filter, MStatus* status)
    : list_(list), filter_(filter) {
    Tell(status, MS::kSuccess);
    Skip();
}

void MItSelectionList::Skip() {
    while (at_ < list_.length() && !list_.items()[at_].node.hasFn(filter_)) ++at_;
}

bool MItSelectionList::isDone(MStatus* status) const {
    return Tell(status, MS::kSuccess, at_ >= list_.length());
}

MStatus MItSelectionList::next() {
    if (isDone()) return MS::kFailure;
    ++at_;
    Skip();
    return MS::kSuccess;
}

MStatus MItSelectionList::reset() {
    at_ = 0;
    Skip();
    return MS::kSuccess;
}

MStatus MItSelectionList::getDependNode(MObject& node) const {
    return list_.getDependNode(at_, node);
}
MStatus MItSelectionList::getDagPath(MDagPath& path) const {
    return list_.getDagPath(at_, path);
}
MStatus MItSelectionList::getDagPath(MDagPath& path, MObject& component) const {
    return list_.getDagPath(at_, path, component);
}
bool MItSelectionList::hasComponents(MStatus* status) const {
    const bool at = Tell(status, isDone() ? MS::kFailure : MS::kSuccess);
    return at && !list_.items()[at_].component.isNull();
}
