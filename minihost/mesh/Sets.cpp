#include "minihost/mesh/Sets.h"

#include <algorithm>

#include "minihost/mesh/MeshData.h"

namespace minihost {
namespace {

/// Passes geometry on with components under a number.
class GroupPartsLogic : public NodeLogic {
  public:
    using NodeLogic::NodeLogic;

    MStatus Compute(const Plug& plug) override {
        if (plug.attribute->longName != "outputGeometry") return MS::kUnknownParameter;
        MeshPtr mesh = DataOf<MeshData>(Pull(*node_.FindSlot("inputGeometry")));
        const int id = static_cast<int>(NumberOf(Pull(*node_.FindSlot("groupId"))));
        const auto parts = DataOf<ComponentListData>(Pull(*node_.FindSlot("inputComponents")));
        if (mesh && parts && !parts->value.empty()) {
            mesh = std::make_shared<MeshData>(*mesh);
            mesh->SetGroup(id, parts->value[0]);
        }
        SetResult(*plug.Find(), mesh);
        return MS::kSuccess;
    }
};

/// Takes the lowest number that no other has.
class GroupIdLogic : public NodeLogic {
  public:
    using NodeLogic::NodeLogic;

    void PostConstructor() override {
        int id = 1;
        for (const NodePtr& other : node_.scene().NodesOfType("groupId"))
            if (other.get() != &node_)
                id =
                    std::max(id, static_cast<int>(NumberOf(other->FindSlot("groupId")->value)) + 1);
        SetResult(*node_.FindSlot("groupId"), double(id));
    }
};

void AddMessages(NodeType& type, const char* longName, const char* shortName) {
    Attribute* list = type.Add(PlainAttribute(longName, shortName, AttributeKind::Message));
    list->isArray = true;
    list->isStorable = false;
    list->disconnect = DisconnectBehavior::Delete;
}

}  // namespace

void RegisterSetTypes(NodeTypes& types) {
    NodeType& set = types.Make("objectSet", 0x4f425354, MFn::kSet);
    AddMessages(set, "dagSetMembers", "dsm");
    AddMessages(set, "dnSetMembers", "dnsm");
    AddMessages(set, "groupNodes", "gn");
    AddMessages(set, "usedBy", "ub");
    set.Add(PlainAttribute("partition", "pa", AttributeKind::Message));
    set.Add(TypedAttribute("annotation", "an", MFnData::kString));
    set.Add(NumericAttribute("verticesOnlySet", "vo", MFnNumericData::kBoolean));

    AddMessages(types.Make("partition", 0x5052544e, MFn::kDependencyNode), "sets", "st");

    NodeType& groupId = types.Make("groupId", 0x47504944, MFn::kGroupId);
    groupId.Add(NumericAttribute("groupId", "id", MFnNumericData::kInt));
    groupId.maker = [](Node& node) { return std::make_unique<GroupIdLogic>(node); };

    NodeType& parts = types.Make("groupParts", 0x47525054, MFn::kGroupParts);
    parts.Add(TypedAttribute("inputGeometry", "ig", MFnData::kMesh));
    parts.Add(TypedAttribute("inputComponents", "ic", MFnData::kComponentList));
    parts.Add(NumericAttribute("groupId", "gi", MFnNumericData::kInt));
    Attribute* out = parts.Add(TypedAttribute("outputGeometry", "og", MFnData::kMesh));
    out->isStorable = out->isWritable = false;
    parts.Affects({"inputGeometry", "inputComponents", "groupId"}, {"outputGeometry"});
    parts.maker = [](Node& node) { return std::make_unique<GroupPartsLogic>(node); };
    parts.beforeDelete = [](Modifier& edits, Node& node) {
        Bypass(edits, node.FindPlug("inputGeometry"), node.FindPlug("outputGeometry"));
    };
}

int FreeIndex(const Plug& array) {
    const Slot* slot = array.Find();
    if (!slot) return 0;
    int free = 0;
    for (const auto& element : slot->parts) {
        if (element->index != free) break;
        ++free;
    }
    return free;
}

bool ConnectNext(Modifier& edits, const Plug& source, const NodePtr& node, const char* array) {
    const Plug plug = node->FindPlug(array);
    return edits.Connect(source, plug.Element(FreeIndex(plug)));
}

namespace {

Plug GroupsOf(const NodePtr& shape) {
    return shape->FindPlug("instObjGroups").Element(0).Child(0);
}

}  // namespace

Plug FreeObjectGroup(const NodePtr& shape) {
    return GroupsOf(shape).Element(FreeIndex(GroupsOf(shape)));
}

NodePtr CreateGroupId(Modifier& edits, const std::string& name) {
    return edits.Create("groupId", name);
}

bool AddToSet(Modifier& edits, const NodePtr& shape, const NodePtr& set, const NodePtr& groupId,
              const Component* component) {
    const Plug group = FreeObjectGroup(shape);
    if (component) {
        const auto list = std::make_shared<ComponentListData>();
        list->value = {*component};
        edits.Set(group.Child(0), std::shared_ptr<Data>(list));
    }
    return edits.Connect(groupId->FindPlug("groupId"), group.Child(1)) &&
           ConnectNext(edits, group, set, "dagSetMembers") &&
           ConnectNext(edits, groupId->FindPlug("message"), set, "groupNodes");
}

NodePtr SourceNode(const Plug& destination) {
    const Slot* slot = destination.Find();
    const Slot* source = slot ? slot->Source() : nullptr;
    return source ? source->node->Share() : nullptr;
}

void Bypass(Modifier& edits, const Plug& input, const Plug& output) {
    const Slot *in = input.Find(), *out = output.Find();
    if (!out || !in || !in->source) return;
    const Plug source(*in->source);
    const std::vector<Slot*> fed = out->destinations;
    for (Slot* slot : fed) {
        const Plug destination(*slot);
        edits.Disconnect(destination);
        edits.Connect(source, destination);
    }
}

namespace {

/// Deletes a number that only the groupParts which put it there still use, and those.
void DropUnused(Modifier& edits, const NodePtr& groupId) {
    std::vector<NodePtr> parts;
    for (const Slot* user : groupId->FindSlot("groupId")->destinations) {
        if (!user->node->type().IsA("groupParts")) return;
        parts.push_back(user->node->Share());
    }
    for (const NodePtr& node : parts) edits.Delete(node);
    edits.Delete(groupId);
}

}  // namespace

void RemoveFromSets(Modifier& edits, const Plug& shapeOrGroup) {
    const Slot* member = shapeOrGroup.Find();
    if (!member) return;
    const std::vector<Slot*> sets = member->destinations;
    for (Slot* set : sets)
        if (set->attribute->longName == "dagSetMembers") edits.Disconnect(Plug(*set));
    if (shapeOrGroup.attribute->longName != "objectGroups") return;
    const NodePtr groupId = SourceNode(shapeOrGroup.Child(1));
    edits.RemoveElement(shapeOrGroup);
    if (groupId && groupId->type().IsA("groupId")) DropUnused(edits, groupId);
}

}  // namespace minihost
