#include "minihost/deform/GeometryFilter.h"

#include "minihost/deform/DeformerChain.h"

namespace minihost {

DeformInput ReadDeformInput(Node& node, int index) {
    DeformInput in;
    in.index = index;
    const Slot* input = node.FindPlug("input").Element(index).Find();
    if (!input) return in;
    in.mesh = DataOf<MeshData>(Pull(*input->parts[0]));
    in.envelope = NumberOf(Pull(*node.FindSlot("envelope")));
    if (!in.mesh) return in;
    const ObjectGroup* group =
        in.mesh->FindGroup(static_cast<int>(NumberOf(Pull(*input->parts[1]))));
    if (group && !group->component.complete && group->component.kind == MFn::kMeshVertComponent)
        in.members = ElementsOf(group->component, in.mesh->numVertices());
    return in;
}

MStatus DeformerLogic::Compute(const Plug& plug) {
    if (plug.attribute->longName != "outputGeometry") return MS::kUnknownParameter;
    const DeformInput in = ReadDeformInput(node_, plug.LogicalIndex());
    MeshPtr out = in.mesh;
    const bool isNormal = NumberOf(Pull(*node_.FindSlot("nodeState"))) == 0;
    if (out && isNormal && in.envelope != 0) {
        out = std::make_shared<MeshData>(*in.mesh);
        Deform(in, *out);
    }
    SetResult(*plug.Make(), out);
    return MS::kSuccess;
}

void RegisterDeformTypes(NodeTypes& types) {
    NodeType& filter = types.Make("geometryFilter", 0, MFn::kGeometryFilt);
    filter.isAbstract = true;
    const auto input = PlainAttribute("input", "ip", AttributeKind::Compound);
    input->isArray = true;
    input->disconnect = DisconnectBehavior::Delete;
    input->AddChild(TypedAttribute("inputGeometry", "ig", MFnData::kMesh));
    input->AddChild(NumericAttribute("groupId", "gi", MFnNumericData::kInt));
    filter.Add(input);
    filter.Add(NumericAttribute("envelope", "en", MFnNumericData::kFloat, 1))->isKeyable = true;
    Attribute* out = filter.Add(TypedAttribute("outputGeometry", "og", MFnData::kMesh));
    out->isArray = true;
    out->isStorable = out->isWritable = false;
    filter.Affects({"input", "inputGeometry", "groupId", "envelope", "nodeState"},
                   {"outputGeometry"});
    filter.beforeDelete = [](Modifier& edits, Node& node) { TakeOutDeformer(edits, node.Share()); };

    RegisterTweak(types);
    RegisterSkinCluster(types);
    RegisterBlendShape(types);
}

}  // namespace minihost
