#include "minihost/deform/DeformerChain.h"

#include <algorithm>

#include "minihost/dag/DagNode.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Sets.h"

namespace minihost {
namespace {

std::vector<double> Numbers(Slot& triple) {
    std::vector<double> numbers;
    for (const auto& part : triple.parts) numbers.push_back(NumberOf(Pull(*part)));
    return numbers;
}

bool IsZero(const std::vector<double>& numbers) {
    return std::ranges::all_of(numbers, [](double n) { return n == 0; });
}

/// What feeds a mesh, with a hidden copy of the shape made where nothing does.
Plug SourceOf(Modifier& edits, const NodePtr& mesh) {
    const Plug in = mesh->FindPlug("inMesh");
    const Slot* slot = in.Find();
    if (slot->source) return Plug(*slot->source);
    const auto& shape = static_cast<DagNode&>(*mesh);
    const NodePtr copy = edits.Create("mesh", shape.name() + "Orig", shape.parent());
    edits.Set(copy->FindPlug("intermediateObject"), 1.0);
    edits.Set(copy->FindPlug("inMesh"), slot->value);
    return copy->FindPlug("worldMesh").Element(0);
}

/// Puts a deformer's geometry `index` between `source` and what the mesh shows.
void Insert(Modifier& edits, const NodePtr& deformer, const NodePtr& set, int index,
            const NodePtr& mesh, const Plug& source) {
    const NodePtr parts = edits.Create("groupParts"), groupId = CreateGroupId(edits);
    const auto all = std::make_shared<ComponentListData>();
    all->value = {{MFn::kMeshVertComponent, true, {}}};
    edits.Set(parts->FindPlug("inputComponents"), std::shared_ptr<Data>(all));
    const Plug input = deformer->FindPlug("input").Element(index);
    edits.Connect(source, parts->FindPlug("inputGeometry"));
    edits.Connect(groupId->FindPlug("groupId"), parts->FindPlug("groupId"));
    edits.Connect(parts->FindPlug("outputGeometry"), input.Child(0));
    edits.Connect(groupId->FindPlug("groupId"), input.Child(1));
    edits.Connect(deformer->FindPlug("outputGeometry").Element(index), mesh->FindPlug("inMesh"),
                  true);
    AddToSet(edits, mesh, set, groupId);
}

NodePtr CreateDeformer(Modifier& edits, const std::string& type, const std::string& name) {
    const NodePtr deformer = edits.Create(type, name);
    const NodePtr set = edits.Create("objectSet", deformer->name() + "Set");
    edits.Set(set->FindPlug("verticesOnlySet"), 1.0);
    edits.Connect(deformer->FindPlug("message"), set->FindPlug("usedBy").Element(0));
    return deformer;
}

/// Gives a mesh a tweak at the end of its history, and the mesh's own tweaks to that.
void InsertTweak(Modifier& edits, const NodePtr& mesh) {
    const Plug source = SourceOf(edits, mesh);
    const NodePtr tweak = CreateDeformer(edits, "tweak", {});
    Insert(edits, tweak, DeformerSet(tweak), 0, mesh, source);
    const Plug moves = tweak->FindPlug("vlist").Element(0).Child(0), own = mesh->FindPlug("pnts");
    std::vector<Plug> taken;
    for (const auto& element : own.Find()->parts) taken.emplace_back(*element);
    for (const Plug& element : taken) {
        const std::vector<double> move = Numbers(*element.Find());
        if (!IsZero(move)) edits.SetNumbers(moves.Element(element.LogicalIndex()), move);
        edits.RemoveElement(element);
    }
    edits.Connect(moves.Element(0), mesh->FindPlug("tweakLocation"));
}

NodePtr TweakOf(const NodePtr& mesh) {
    return SourceNode(mesh->FindPlug("tweakLocation"));
}

}  // namespace

NodePtr DeformerSet(const NodePtr& deformer) {
    for (const Slot* user : deformer->FindSlot("message")->destinations)
        if (user->attribute->longName == "usedBy") return user->node->Share();
    return nullptr;
}

NodePtr InsertDeformer(Modifier& edits, const std::string& typeName,
                       const std::vector<NodePtr>& meshes, std::string& error,
                       const std::string& name) {
    if (meshes.empty()) {
        error = "select the mesh to deform";
        return nullptr;
    }
    Scene& scene = meshes[0]->scene();
    const NodeTypePtr type = scene.types().Find(typeName);
    if (!type || type->isAbstract || !type->IsA("geometryFilter")) {
        error = "'" + typeName + "' is no type of deformer";
        return nullptr;
    }
    for (const NodePtr& mesh : meshes)
        if (!mesh->type().IsA("mesh")) {
            error = "'" + mesh->UniqueName() + "' is no mesh";
            return nullptr;
        }
    for (const NodePtr& mesh : meshes)
        if (typeName != "tweak" && !TweakOf(mesh)) InsertTweak(edits, mesh);
    const NodePtr deformer = CreateDeformer(edits, typeName, name);
    for (size_t i = 0; i < meshes.size(); ++i)
        Insert(edits, deformer, DeformerSet(deformer), static_cast<int>(i), meshes[i],
               SourceOf(edits, meshes[i]));
    return deformer;
}

void TakeOutDeformer(Modifier& edits, const NodePtr& deformer) {
    const Slot* inputs = deformer->FindSlot("input");
    std::vector<int> indices;
    for (const auto& input : inputs->parts) indices.push_back(input->index);
    std::vector<NodePtr> parts;
    for (const int i : indices) {
        const Plug geometry = deformer->FindPlug("input").Element(i).Child(0);
        const NodePtr before = SourceNode(geometry);
        Bypass(edits, geometry, deformer->FindPlug("outputGeometry").Element(i));
        if (before && before->type().IsA("groupParts")) parts.push_back(before);
    }
    const NodePtr set = DeformerSet(deformer);
    if (!set) return;
    const Slot* members = set->FindSlot("dagSetMembers");
    while (!members->parts.empty()) {
        const size_t count = members->parts.size();
        const Slot* source = members->parts.back()->source;
        if (!source) break;
        const Plug group(*source);
        const NodePtr groupId =
            group.attribute->longName == "objectGroups" ? SourceNode(group.Child(1)) : nullptr;
        // The deformer itself reads the number of its group: that goes first.
        for (const int i : indices) {
            const Plug number = deformer->FindPlug("input").Element(i).Child(1);
            if (groupId && SourceNode(number) == groupId) edits.Disconnect(number);
        }
        RemoveFromSets(edits, group);
        if (members->parts.size() == count) break;
    }
    edits.Delete(set);
    for (const NodePtr& node : parts)
        if (SourceNode(node->FindPlug("groupId")) == nullptr) edits.Delete(node);
}

std::vector<NodePtr> HistoryOf(const NodePtr& mesh) {
    std::vector<NodePtr> history;
    const auto visit = [&history](auto&& self, Slot& slot) -> void {
        if (slot.source) {
            const NodePtr node = slot.source->node->Share();
            if (std::ranges::count(history, node)) return;
            history.push_back(node);
            const auto below = [&self](auto&& walk, Slot& s) -> void {
                if (s.attribute->dataType == MFnData::kMesh) self(self, s);
                for (const auto& part : s.parts) walk(walk, *part);
            };
            for (Slot& root : node->roots()) below(below, root);
        }
    };
    visit(visit, *mesh->FindSlot("inMesh"));
    return history;
}

void MoveVertices(Modifier& edits, const NodePtr& mesh, const std::vector<int>& vertices,
                  const std::vector<MVector>& moves) {
    const NodePtr tweak = TweakOf(mesh);
    const Plug array =
        tweak ? tweak->FindPlug("vlist").Element(0).Child(0) : mesh->FindPlug("pnts");
    for (size_t i = 0; i < vertices.size() && i < moves.size(); ++i) {
        const Plug vertex = array.Element(vertices[i]);
        std::vector<double> at{moves[i].x, moves[i].y, moves[i].z};
        if (Slot* slot = vertex.Find()) {
            const std::vector<double> before = Numbers(*slot);
            for (size_t c = 0; c < 3; ++c) at[c] += before[c];
        }
        edits.SetNumbers(vertex, at);
    }
}

}  // namespace minihost
