#include <algorithm>

#include "minihost/deform/GeometryFilter.h"

namespace minihost {
namespace {

/// Adds vlist[geometry].vertex[vertex] to the vertices of each geometry.
class TweakLogic : public DeformerLogic {
  public:
    using DeformerLogic::DeformerLogic;

  protected:
    void Deform(const DeformInput& in, MeshData& out) override {
        Slot* list = node_.FindPlug("vlist").Element(in.index).Find();
        if (!list || list->parts[0]->parts.empty()) return;
        std::vector<MFloatVector>& points = out.EditPoints();
        for (const auto& vertex : list->parts[0]->parts) {
            if (vertex->index >= out.numVertices()) break;
            if (in.members && !std::ranges::binary_search(*in.members, vertex->index)) continue;
            MFloatVector& p = points[static_cast<size_t>(vertex->index)];
            for (unsigned c = 0; c < 3; ++c)
                p[c] = static_cast<float>(double{p[c]} +
                                          in.envelope * NumberOf(Pull(*vertex->parts[c])));
        }
    }
};

}  // namespace

void RegisterTweak(NodeTypes& types) {
    NodeType& tweak = types.Make("tweak", 0x5457454b, MFn::kTweak, "geometryFilter");
    const auto list = PlainAttribute("vlist", "vl", AttributeKind::Compound);
    list->isArray = true;
    const auto vertex = std::make_shared<Attribute>("vertex", "vt", AttributeKind::Numeric);
    vertex->numeric = MFnNumericData::k3Float;
    vertex->isArray = true;
    for (const auto& [name, shortName] :
         {std::pair{"xVertex", "vx"}, {"yVertex", "vy"}, {"zVertex", "vz"}})
        vertex->AddChild(NumericAttribute(name, shortName, MFnNumericData::kFloat));
    list->AddChild(vertex);
    tweak.Add(list);
    tweak.Affects({"vlist", "vertex"}, {"outputGeometry"});
    tweak.maker = [](Node& node) { return std::make_unique<TweakLogic>(node); };
}

}  // namespace minihost
