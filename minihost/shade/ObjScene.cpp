#include "minihost/shade/ObjScene.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "minihost/dag/DagNode.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/ObjFile.h"
#include "minihost/mesh/Sets.h"
#include "minihost/shade/Assign.h"

namespace minihost {
namespace {

constexpr const char* kPlainGroup = "initialShadingGroup";

/// Makes the nodes of one file. Groups and materials are by name, shared by its meshes.
class Importer {
  public:
    Importer(Modifier& edits, Scene& scene, const ObjFile& file, const std::string& name)
        : edits_(edits), scene_(scene), file_(file), name_(name) {}

    NodePtr Import(const ObjMesh& part) {
        const MeshNodes made = CreateMesh(edits_, part.mesh, part.name.empty() ? name_ : part.name);
        if (const NodePtr plain = scene_.Find(kPlainGroup))
            AssignShading(edits_, made.shape, plain);
        for (const NamedPolygons& material : part.materials)
            if (const NodePtr group = ShadingGroup(material.name))
                AssignShading(edits_, made.shape, group, material.polygons);
        for (const NamedPolygons& group : part.groups) {
            const Component polygons{MFn::kMeshPolygonComponent, false, group.polygons};
            AddToSet(edits_, made.shape, Set(group.name), CreateGroupId(edits_), &polygons);
        }
        return made.transform;
    }

  private:
    NodePtr Set(const std::string& name) {
        NodePtr& set = sets_[name];
        if (!set) set = edits_.Create("objectSet", name);
        return set;
    }

    NodePtr ShadingGroup(const std::string& name) {
        if (name == kPlainGroup) return scene_.Find(kPlainGroup);
        NodePtr& group = shading_[name];
        if (!group) group = Make(name);
        return group;
    }

    NodePtr Make(const std::string& name) {
        const NodePtr group = CreateShadingGroup(edits_, "lambert", name);
        const NodePtr shader = SourceNode(group->FindPlug("surfaceShader"));
        const auto told = std::ranges::find(file_.materials, name, &ObjMaterial::name);
        if (told == file_.materials.end()) return group;
        const MFloatVector& c = told->color;
        const double clear = told->transparency;
        edits_.SetNumbers(shader->FindPlug("color"), {c.x, c.y, c.z});
        edits_.SetNumbers(shader->FindPlug("transparency"), {clear, clear, clear});
        if (!told->texture.empty())
            edits_.Connect(CreateFileTexture(edits_, told->texture)->FindPlug("outColor"),
                           shader->FindPlug("color"));
        return group;
    }

    Modifier& edits_;
    Scene& scene_;
    const ObjFile& file_;
    std::string name_;
    std::map<std::string, NodePtr> sets_, shading_;
};

MFloatVector ColorAt(Node& node, const char* attribute) {
    MFloatVector color;
    const Slot& slot = *node.FindSlot(attribute);
    for (unsigned i = 0; i < 3; ++i) color[i] = static_cast<float>(NumberOf(Pull(*slot.parts[i])));
    return color;
}

/// What a material library says of the shader of a group.
ObjMaterial MaterialOf(const NodePtr& group) {
    ObjMaterial material;
    const NodePtr shader = SourceNode(group->FindPlug("surfaceShader"));
    material.name = shader && group->name() != kPlainGroup ? shader->name() : group->name();
    if (!shader || !shader->type().Find("color")) return material;
    material.color = ColorAt(*shader, "color");
    material.transparency = ColorAt(*shader, "transparency").x;
    const NodePtr texture = SourceNode(shader->FindPlug("color"));
    if (texture && texture->type().IsA("file")) {
        const auto file = DataOf<StringData>(Pull(*texture->FindSlot("fileTextureName")));
        if (file) material.texture = file->value;
        material.color = {0.5f, 0.5f, 0.5f};
    }
    return material;
}

/// The sets, shading groups aside, that groups of polygons of a mesh node are in.
std::vector<NamedPolygons> GroupsOf(Node& shape, const MeshData& mesh) {
    std::vector<NamedPolygons> groups;
    const Slot* shown = shape.FindPlug("instObjGroups").Element(0).Find();
    if (!shown) return groups;
    for (const auto& slot : shown->parts[0]->parts) {
        const ObjectGroup* group =
            mesh.FindGroup(static_cast<int>(NumberOf(Pull(*slot->parts[1]))));
        if (!group || group->component.kind != MFn::kMeshPolygonComponent) continue;
        for (const Slot* set : slot->destinations)
            if (set->attribute->longName == "dagSetMembers" &&
                !set->node->type().IsA("shadingEngine"))
                groups.push_back({set->node->name(), mesh.Expand(group->component).elements});
    }
    return groups;
}

ObjMesh PartOf(const NodePtr& node, std::map<std::string, ObjMaterial>& materials) {
    auto& shape = static_cast<DagNode&>(*node);
    const MeshPtr shown = MeshOf(shape);
    const bool isTop = !shape.parent() || shape.parent()->name().empty();
    ObjMesh part{isTop ? shape.name() : shape.parent()->name(), shown, GroupsOf(shape, *shown), {}};
    if (const MMatrix world = shape.WorldMatrix(); world != MMatrix()) {
        part.mesh = std::make_shared<MeshData>(*shown);
        for (MFloatVector& p : part.mesh->EditPoints()) {
            const MPoint q = MPoint(MFloatPoint(p)) * world;
            p = {static_cast<float>(q.x), static_cast<float>(q.y), static_cast<float>(q.z)};
        }
    }
    const Shading shading = ShadingOf(shape);
    for (size_t g = 0; g < shading.groups.size(); ++g) {
        const ObjMaterial material = MaterialOf(shading.groups[g]);
        NamedPolygons named{material.name, {}};
        for (size_t p = 0; p < shading.ofPolygon.size(); ++p)
            if (shading.ofPolygon[p] == static_cast<int>(g))
                named.polygons.push_back(static_cast<int>(p));
        if (shading.groups.size() == 1 && material.name == kPlainGroup) break;
        if (material.name != kPlainGroup) materials[material.name] = material;
        part.materials.push_back(std::move(named));
    }
    return part;
}

}  // namespace

std::vector<NodePtr> ImportObj(Modifier& edits, const std::string& path, std::string& error) {
    ObjFile file;
    if (!ReadObjFile(path, file, error)) return {};
    Importer importer(edits, edits.scene(), file, std::filesystem::path(path).stem());
    std::vector<NodePtr> made;
    for (const ObjMesh& part : file.meshes) made.push_back(importer.Import(part));
    return made;
}

bool ExportObj(const std::vector<NodePtr>& meshes, const std::string& path, std::string& error) {
    ObjFile file;
    std::map<std::string, ObjMaterial> materials;
    for (const NodePtr& mesh : meshes) {
        if (!MeshOf(*mesh)) {
            error = "'" + mesh->UniqueName() + "' has no mesh to be written";
            return false;
        }
        file.meshes.push_back(PartOf(mesh, materials));
    }
    for (auto& [name, material] : materials) file.materials.push_back(std::move(material));
    return WriteObjFile(path, file, error);
}

}  // namespace minihost
