#include "minihost/mesh/MeshTypes.h"

#include "minihost/dag/DagNode.h"
#include "minihost/mesh/MeshNode.h"
#include "minihost/mesh/Primitives.h"

namespace minihost {

MeshPtr MeshOf(Node& shape) {
    Slot* out = shape.type().IsA("mesh") ? shape.FindSlot("outMesh") : nullptr;
    return out ? DataOf<MeshData>(Pull(*out)) : nullptr;
}

bool SetMesh(Modifier& edits, const NodePtr& shape, const MeshPtr& mesh) {
    return edits.Set(shape->FindPlug("inMesh"), std::shared_ptr<Data>(mesh));
}

MeshNodes CreateMesh(Modifier& edits, const MeshPtr& mesh, const std::string& name,
                     DagNode* parent) {
    MeshNodes made;
    made.transform = std::static_pointer_cast<DagNode>(
        edits.Create("transform", name.empty() ? "polySurface1" : name, parent));
    // head1 has the shape headShape1
    const std::string& full = made.transform->name();
    const size_t stem = full.find_last_not_of("0123456789") + 1;
    made.shape = std::static_pointer_cast<DagNode>(edits.Create(
        "mesh", full.substr(0, stem) + "Shape" + full.substr(stem), made.transform.get()));
    if (mesh) SetMesh(edits, made.shape, mesh);
    return made;
}

MeshNodes CreatePrimitive(Modifier& edits, const std::string& type, const std::string& name) {
    MeshNodes made = CreateMesh(edits, nullptr, name.empty() ? PrimitiveName(type) : name);
    made.maker = edits.Create(type);
    edits.Connect(made.maker->FindPlug("output"), made.shape->FindPlug("inMesh"));
    return made;
}

void RegisterMeshTypes(NodeTypes& types) {
    RegisterMeshNode(types);
    RegisterPrimitives(types);
}

}  // namespace minihost
