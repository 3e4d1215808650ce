#include "minihost/shade/Assign.h"

#include <algorithm>

#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Sets.h"

namespace minihost {
namespace {

/// The shading group that a shape or a group of it is a member of, null for none.
NodePtr ShadingGroupOf(const Slot& member) {
    for (const Slot* set : member.destinations)
        if (set->attribute->longName == "dagSetMembers" && set->node->type().IsA("shadingEngine"))
            return set->node->Share();
    return nullptr;
}

/// The polygons of a mesh node that a group of it holds.
std::vector<int> PolygonsOf(const Slot& group, const MeshData& mesh) {
    const auto list = DataOf<ComponentListData>(Pull(*group.parts[0]));
    const ObjectGroup* found = mesh.FindGroup(static_cast<int>(NumberOf(Pull(*group.parts[1]))));
    const Component* component = list && !list->value.empty() ? &list->value[0]
                                 : found                      ? &found->component
                                                              : nullptr;
    if (!component || component->kind != MFn::kMeshPolygonComponent) return {};
    return ElementsOf(*component, mesh.polygons().count());
}

/// The memberships of a mesh node in shading groups: itself, then its groups.
std::vector<Plug> Memberships(Node& shape) {
    std::vector<Plug> members;
    const Slot* whole = shape.FindPlug("instObjGroups").Element(0).Find();
    if (!whole) return members;
    if (ShadingGroupOf(*whole)) members.emplace_back(*whole);
    for (const auto& group : whole->parts[0]->parts)
        if (ShadingGroupOf(*group)) members.emplace_back(*group);
    return members;
}

}  // namespace

Shading ShadingOf(Node& shape) {
    Shading shading;
    const MeshPtr mesh = MeshOf(shape);
    if (!mesh) return shading;
    shading.ofPolygon.assign(static_cast<size_t>(mesh->polygons().count()), -1);
    for (const Plug& plug : Memberships(shape)) {
        const Slot& member = *plug.Find();
        const NodePtr group = ShadingGroupOf(member);
        const auto at = std::ranges::find(shading.groups, group);
        const int number = static_cast<int>(at - shading.groups.begin());
        if (at == shading.groups.end()) shading.groups.push_back(group);
        if (member.attribute->longName == "instObjGroups")
            std::ranges::fill(shading.ofPolygon, number);
        else
            for (const int p : PolygonsOf(member, *mesh))
                shading.ofPolygon[static_cast<size_t>(p)] = number;
    }
    return shading;
}

NodePtr CreateShadingGroup(Modifier& edits, const std::string& shaderType,
                           const std::string& name) {
    const NodePtr shader = edits.Create(shaderType, name);
    if (!shader) return nullptr;
    const NodePtr group = edits.Create("shadingEngine", shader->name() + "SG");
    if (!edits.Connect(shader->FindPlug("outColor"), group->FindPlug("surfaceShader"))) {
        edits.Delete(group);
        edits.Delete(shader);
        return nullptr;
    }
    Scene& scene = edits.scene();
    if (const NodePtr list = scene.Find("renderPartition"))
        ConnectNext(edits, group->FindPlug("partition"), list, "sets");
    if (const NodePtr list = scene.Find("defaultShaderList1"))
        ConnectNext(edits, shader->FindPlug("message"), list, "shaders");
    return group;
}

NodePtr CreateFileTexture(Modifier& edits, const std::string& file) {
    const NodePtr texture = edits.Create("file"), place = edits.Create("place2dTexture");
    edits.Set(texture->FindPlug("fileTextureName"), std::make_shared<StringData>(file));
    for (const char* same :
         {"coverage", "translateFrame", "rotateFrame", "mirrorU", "mirrorV", "stagger", "wrapU",
          "wrapV", "repeatUV", "offset", "rotateUV", "noiseUV"})
        edits.Connect(place->FindPlug(same), texture->FindPlug(same));
    edits.Connect(place->FindPlug("outUV"), texture->FindPlug("uvCoord"));
    Scene& scene = edits.scene();
    if (const NodePtr list = scene.Find("defaultTextureList1"))
        ConnectNext(edits, texture->FindPlug("message"), list, "textures");
    if (const NodePtr list = scene.Find("defaultRenderUtilityList1"))
        ConnectNext(edits, place->FindPlug("message"), list, "utilities");
    return texture;
}

bool AssignShading(Modifier& edits, const NodePtr& mesh, const NodePtr& group) {
    if (!mesh->type().IsA("mesh") || !group->type().IsA("shadingEngine")) return false;
    for (const Plug& member : Memberships(*mesh)) RemoveFromSets(edits, member);
    return ConnectNext(edits, mesh->FindPlug("instObjGroups").Element(0), group, "dagSetMembers");
}

namespace {

/// Makes polygons of a mesh node a group in a shading group: set on the node, or where history
/// feeds it put into the geometry on the way.
bool AssignGroup(Modifier& edits, const NodePtr& mesh, const NodePtr& group,
                 const Component& polygons) {
    const NodePtr groupId = CreateGroupId(edits);
    const Plug in = mesh->FindPlug("inMesh");
    const Slot* slot = in.Find();
    if (!slot->source) return AddToSet(edits, mesh, group, groupId, &polygons);
    const Plug source(*slot->source);
    const NodePtr parts = edits.Create("groupParts");
    const auto list = std::make_shared<ComponentListData>();
    list->value = {polygons};
    return edits.Set(parts->FindPlug("inputComponents"), std::shared_ptr<Data>(list)) &&
           edits.Connect(groupId->FindPlug("groupId"), parts->FindPlug("groupId")) &&
           edits.Connect(source, parts->FindPlug("inputGeometry")) &&
           edits.Connect(parts->FindPlug("outputGeometry"), in, true) &&
           AddToSet(edits, mesh, group, groupId);
}

}  // namespace

bool AssignShading(Modifier& edits, const NodePtr& mesh, const NodePtr& group,
                   const std::vector<int>& polygons) {
    if (!mesh->type().IsA("mesh") || !group->type().IsA("shadingEngine")) return false;
    Shading shading = ShadingOf(*mesh);
    auto& of = shading.ofPolygon;
    if (std::ranges::any_of(polygons, [&of](int p) { return p < 0 || size_t(p) >= of.size(); }))
        return false;
    const auto at = std::ranges::find(shading.groups, group);
    const int number = static_cast<int>(at - shading.groups.begin());
    if (at == shading.groups.end()) shading.groups.push_back(group);
    for (const int p : polygons) of[static_cast<size_t>(p)] = number;
    if (std::ranges::count(of, number) == std::ssize(of)) return AssignShading(edits, mesh, group);

    std::vector<Component> parts(shading.groups.size(), {MFn::kMeshPolygonComponent, false, {}});
    for (size_t p = 0; p < of.size(); ++p)
        if (of[p] >= 0) parts[static_cast<size_t>(of[p])].elements.push_back(static_cast<int>(p));
    for (const Plug& member : Memberships(*mesh)) RemoveFromSets(edits, member);
    bool done = true;
    for (size_t i = 0; i < parts.size(); ++i)
        if (!parts[i].elements.empty())
            done &= AssignGroup(edits, mesh, shading.groups[i], parts[i]);
    return done;
}

NodePtr CreateAndAssignShader(Modifier& edits, const std::string& shaderType, const NodePtr& mesh) {
    const NodePtr group = CreateShadingGroup(edits, shaderType);
    if (group && !AssignShading(edits, mesh, group)) return nullptr;
    return group;
}

}  // namespace minihost
