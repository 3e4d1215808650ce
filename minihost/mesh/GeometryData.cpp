#include <algorithm>

#include "maya/MFnMeshData.h"
#include "maya/MFnPointArrayData.h"
#include "minihost/api/Status.h"
#include "minihost/mesh/ComponentObject.h"
#include "minihost/mesh/MeshData.h"

using minihost::ComponentObject;
using minihost::MeshData;
using minihost::ObjectGroup;
using minihost::PointArrayData;
using minihost::Tell;

MFnGeometryData::MFnGeometryData(const MObject& data, MStatus* status) {
    Tell(status, setObject(data));
}

unsigned MFnGeometryData::objectGroupCount(MStatus* status) const {
    const auto* mesh = object_.as<MeshData>();
    Tell(status, mesh ? MS::kSuccess : MS::kInvalidParameter);
    return mesh ? static_cast<unsigned>(mesh->groups.size()) : 0;
}

unsigned MFnGeometryData::objectGroup(unsigned place, MStatus* status) const {
    const auto* mesh = object_.as<MeshData>();
    const bool there = mesh && place < mesh->groups.size();
    Tell(status, there ? MS::kSuccess : MS::kInvalidParameter);
    return there ? static_cast<unsigned>(mesh->groups[place].id) : 0;
}

namespace {

const ObjectGroup* GroupOf(const MObject& object, unsigned id, MStatus* status) {
    const auto* mesh = object.as<MeshData>();
    const ObjectGroup* group = mesh ? mesh->FindGroup(static_cast<int>(id)) : nullptr;
    Tell(status, group ? MS::kSuccess : MS::kInvalidParameter);
    return group;
}

}  // namespace

bool MFnGeometryData::hasObjectGroup(unsigned id, MStatus* status) const {
    const bool there = GroupOf(object_, id, nullptr);
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
    return there;
}

MFn::Type MFnGeometryData::objectGroupType(unsigned id, MStatus* status) const {
    const ObjectGroup* group = GroupOf(object_, id, status);
    return group ? group->component.kind : MFn::kInvalid;
}

MObject MFnGeometryData::objectGroupComponent(unsigned id, MStatus* status) const {
    const ObjectGroup* group = GroupOf(object_, id, status);
    return group ? minihost::MakeComponent(object_.as<MeshData>()->Expand(group->component))
                 : MObject();
}

MStatus MFnGeometryData::addObjectGroup(unsigned id) {
    auto* mesh = object_.as<MeshData>();
    if (!mesh || GroupOf(object_, id, nullptr)) return MS::kInvalidParameter;
    mesh->SetGroup(static_cast<int>(id), {});
    return MS::kSuccess;
}

MStatus MFnGeometryData::addObjectGroupComponent(unsigned id, const MObject& component) {
    const ObjectGroup* group = GroupOf(object_, id, nullptr);
    const auto* added = component.as<ComponentObject>();
    if (!group || !added) return MS::kInvalidParameter;
    minihost::Component all = group->component;
    if (all.elements.empty() && !all.complete) all.kind = added->component.kind;
    if (all.kind != added->component.kind) return MS::kInvalidParameter;
    all.complete |= added->component.complete;
    std::vector<int> merged;
    std::ranges::set_union(all.elements, added->component.elements, std::back_inserter(merged));
    all.elements = std::move(merged);
    object_.as<MeshData>()->SetGroup(static_cast<int>(id), std::move(all));
    return MS::kSuccess;
}

MStatus MFnGeometryData::setObjectGroupComponent(unsigned id, const MObject& component) {
    const auto* set = component.as<ComponentObject>();
    if (!set || !GroupOf(object_, id, nullptr)) return MS::kInvalidParameter;
    object_.as<MeshData>()->SetGroup(static_cast<int>(id), set->component);
    return MS::kSuccess;
}

MStatus MFnGeometryData::removeObjectGroup(unsigned id) {
    if (!GroupOf(object_, id, nullptr)) return MS::kInvalidParameter;
    std::erase_if(object_.as<MeshData>()->groups,
                  [id](const ObjectGroup& g) { return g.id == static_cast<int>(id); });
    return MS::kSuccess;
}

MStatus MFnGeometryData::copyObjectGroups(const MObject& from) {
    auto* mesh = object_.as<MeshData>();
    const auto* source = from.as<MeshData>();
    if (!mesh || !source) return MS::kInvalidParameter;
    mesh->groups = source->groups;
    return MS::kSuccess;
}

MFnMeshData::MFnMeshData(const MObject& data, MStatus* status) {
    Tell(status, setObject(data));
}

MObject MFnMeshData::create(MStatus* status) {
    object_ = MObject(std::make_shared<MeshData>());
    Tell(status, MS::kSuccess);
    return object_;
}

MFnPointArrayData::MFnPointArrayData(const MObject& data, MStatus* status) {
    Tell(status, setObject(data));
}

MObject MFnPointArrayData::create(MStatus* status) {
    return create(MPointArray(), status);
}

MObject MFnPointArrayData::create(const MPointArray& points, MStatus* status) {
    object_ = MObject(std::make_shared<PointArrayData>());
    Tell(status, set(points));
    return object_;
}

unsigned MFnPointArrayData::length(MStatus* status) const {
    const auto* data = object_.as<PointArrayData>();
    Tell(status, data ? MS::kSuccess : MS::kInvalidParameter);
    return data ? static_cast<unsigned>(data->value.size()) : 0;
}

MStatus MFnPointArrayData::copyTo(MPointArray& points) const {
    const auto* data = object_.as<PointArrayData>();
    if (!data) return MS::kInvalidParameter;
    points = MPointArray(data->value.data(), static_cast<unsigned>(data->value.size()));
    return MS::kSuccess;
}

MStatus MFnPointArrayData::set(const MPointArray& points) {
    auto* data = object_.as<PointArrayData>();
    if (!data) return MS::kInvalidParameter;
    data->value.assign(points.begin(), points.end());
    return MS::kSuccess;
}

MPointArray MFnPointArrayData::array(MStatus* status) const {
    MPointArray points;
    Tell(status, copyTo(points));
    return points;
}
