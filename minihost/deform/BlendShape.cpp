#include "minihost/deform/BlendShape.h"

#include <algorithm>

#include "minihost/deform/DeformerChain.h"
#include "minihost/deform/GeometryFilter.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Sets.h"

namespace minihost {
namespace {

/// p' = p + sum over targets of weight * (target - p), where the target is a mesh; or + weight *
/// offset, where it is points and the vertices that they belong to.
class BlendShapeLogic : public DeformerLogic {
  public:
    using DeformerLogic::DeformerLogic;

  protected:
    void Deform(const DeformInput& in, MeshData& out) override {
        const Slot* targets = node_.FindPlug("inputTarget").Element(in.index).Find();
        if (!targets) return;
        const Slot& weights = *node_.FindSlot("weight");
        std::vector<MFloatVector>* points = nullptr;
        for (const auto& group : targets->parts[0]->parts) {
            Slot* weight = weights.FindElement(group->index);
            const double w = weight ? NumberOf(Pull(*weight)) * in.envelope : 0;
            const Slot* item = group->parts[0]->FindElement(kFullTarget);
            if (w == 0 || !item) continue;
            if (!points) points = &out.EditPoints();
            if (const auto mesh = DataOf<MeshData>(Pull(*item->parts[0])))
                AddMesh(in, *mesh, w, *points);
            else
                AddOffsets(in, *item, w, *points);
        }
    }

  private:
    static void Add(MFloatVector& p, double w, const MVector& move) {
        for (unsigned c = 0; c < 3; ++c) p[c] = static_cast<float>(double{p[c]} + w * move[c]);
    }

    static void AddMesh(const DeformInput& in, const MeshData& target, double w,
                        std::vector<MFloatVector>& points) {
        if (target.numVertices() != in.mesh->numVertices()) return;
        in.ForEachMember([&](int vertex) {
            const auto v = static_cast<size_t>(vertex);
            const MFloatVector &from = in.mesh->points()[v], &to = target.points()[v];
            if (from != to) Add(points[v], w, MPoint(MFloatPoint(to)) - MPoint(MFloatPoint(from)));
        });
    }

    static void AddOffsets(const DeformInput& in, const Slot& item, double w,
                           std::vector<MFloatVector>& points) {
        const auto offsets = DataOf<PointArrayData>(Pull(*item.parts[1]));
        const auto list = DataOf<ComponentListData>(Pull(*item.parts[2]));
        if (!offsets || !list) return;
        size_t next = 0;
        for (const Component& component : list->value)
            for (const int v : component.elements) {
                if (next == offsets->value.size()) return;
                const MVector move = offsets->value[next++] - MPoint();
                if (v < 0 || v >= in.mesh->numVertices()) continue;
                if (in.members && !std::ranges::binary_search(*in.members, v)) continue;
                Add(points[static_cast<size_t>(v)], w, move);
            }
    }
};

AttributePtr ArrayOf(AttributePtr attribute) {
    attribute->isArray = true;
    return attribute;
}

}  // namespace

void RegisterBlendShape(NodeTypes& types) {
    NodeType& blend = types.Make("blendShape", 0x46424c53, MFn::kBlendShape, "geometryFilter");
    blend.Add(ArrayOf(NumericAttribute("weight", "w", MFnNumericData::kFloat)))->isKeyable = true;
    const auto item = ArrayOf(PlainAttribute("inputTargetItem", "iti", AttributeKind::Compound));
    item->AddChild(TypedAttribute("inputGeomTarget", "igt", MFnData::kMesh));
    item->AddChild(TypedAttribute("inputPointsTarget", "ipt", MFnData::kPointArray));
    item->AddChild(TypedAttribute("inputComponentsTarget", "ict", MFnData::kComponentList));
    const auto group = ArrayOf(PlainAttribute("inputTargetGroup", "itg", AttributeKind::Compound));
    group->AddChild(item);
    const auto target = ArrayOf(PlainAttribute("inputTarget", "it", AttributeKind::Compound));
    target->AddChild(group);
    blend.Add(target);
    blend.Affects({"weight", "inputTarget", "inputTargetGroup", "inputTargetItem",
                   "inputGeomTarget", "inputPointsTarget", "inputComponentsTarget"},
                  {"outputGeometry"});
    blend.maker = [](Node& node) { return std::make_unique<BlendShapeLogic>(node); };
}

NodePtr CreateBlendShape(Modifier& edits, const std::vector<NodePtr>& targets, const NodePtr& base,
                         std::string& error, const std::string& name) {
    const MeshPtr mesh = MeshOf(*base);
    if (!mesh) {
        error = "'" + base->UniqueName() + "' has no mesh";
        return nullptr;
    }
    for (const NodePtr& target : targets) {
        const MeshPtr shape = MeshOf(*target);
        if (!shape || shape->numVertices() != mesh->numVertices()) {
            error = "'" + target->UniqueName() + "' has not the vertices of '" +
                    base->UniqueName() + "', and cannot be a target of it";
            return nullptr;
        }
    }
    const NodePtr blend = InsertDeformer(edits, "blendShape", {base}, error, name);
    if (!blend) return nullptr;
    const Plug groups = blend->FindPlug("inputTarget").Element(0).Child(0);
    for (size_t t = 0; t < targets.size(); ++t) {
        const int index = static_cast<int>(t);
        edits.Connect(targets[t]->FindPlug("worldMesh").Element(0),
                      groups.Element(index).Child(0).Element(kFullTarget).Child(0));
        edits.Set(blend->FindPlug("weight").Element(index), 0.0);
    }
    return blend;
}

std::vector<NodePtr> TargetsOf(const NodePtr& blendShape) {
    std::vector<NodePtr> targets;
    const Slot* groups = blendShape->FindPlug("inputTarget").Element(0).Find();
    if (!groups) return targets;
    for (const auto& group : groups->parts[0]->parts) {
        const Slot* item = group->parts[0]->FindElement(kFullTarget);
        targets.resize(static_cast<size_t>(group->index) + 1);
        if (item) targets.back() = SourceNode(Plug(*item->parts[0]));
    }
    return targets;
}

}  // namespace minihost
