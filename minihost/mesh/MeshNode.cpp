#include "minihost/mesh/MeshNode.h"

#include "minihost/dag/DagLogic.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshTypes.h"

namespace minihost {
namespace {

std::string TextAt(Node& node, const char* attribute) {
    const auto text = DataOf<StringData>(Pull(*node.FindSlot(attribute)));
    return text ? text->value : "";
}

/// Shows the names of the mesh's sets in the elements of an array of compounds.
template <class Sets>
void ShowNames(const Plug& array, const Sets& sets) {
    for (size_t i = 0; i < sets.size(); ++i) {
        Slot& name = *array.Element(static_cast<int>(i)).Child(0).Make();
        const auto held = DataOf<StringData>(name.value);
        if (!held || held->value != sets[i].name)
            SetResult(name, std::make_shared<StringData>(sets[i].name));
    }
}

class MeshLogic : public DagLogic {
  public:
    using DagLogic::DagLogic;

    MStatus Compute(const Plug& plug) override {
        const std::string& root = plug.attribute->Root()->longName;
        if (root != "outMesh" && root != "worldMesh" && root != "uvSet" && root != "colorSet")
            return DagLogic::Compute(plug);
        const MeshPtr in = DataOf<MeshData>(Pull(*node_.FindSlot("inMesh")));
        const MeshPtr out = in ? Result(in) : nullptr;
        SetResult(*node_.FindSlot("outMesh"), out);
        if (root == "worldMesh") SetResult(*plug.Make(), out);
        if (out) {
            ShowNames(node_.FindPlug("uvSet"), out->uvSets);
            ShowNames(node_.FindPlug("colorSet"), out->colorSets);
        }
        return MS::kSuccess;
    }

    MBoundingBox Bounds() override {
        const MeshPtr mesh = MeshOf(node_);
        return mesh ? mesh->Bounds() : MBoundingBox();
    }

  private:
    /// The input itself where nothing is added to it.
    MeshPtr Result(const MeshPtr& in) {
        MeshPtr out;
        const auto edit = [&]() -> MeshData& {
            if (!out) out = std::make_shared<MeshData>(*in);
            return *out;
        };
        AddTweaks(*in, edit);
        AddGroups(edit);
        const std::string uvs = TextAt(node_, "currentUVSet");
        if (!uvs.empty() && uvs != in->currentUVSet && in->FindUVSet(uvs))
            edit().currentUVSet = uvs;
        const std::string colors = TextAt(node_, "currentColorSet");
        if (!colors.empty() && colors != in->currentColorSet && in->FindColorSet(colors))
            edit().currentColorSet = colors;
        return out ? out : in;
    }

    void AddTweaks(const MeshData& in, auto& edit) {
        Slot& tweaks = *node_.FindSlot("pnts");
        if (tweaks.parts.empty()) return;
        std::vector<MFloatVector>* points = nullptr;
        Evaluate(tweaks);
        for (const auto& tweak : tweaks.parts) {
            MFloatVector offset;
            for (unsigned i = 0; i < 3; ++i)
                offset[i] = static_cast<float>(NumberOf(tweak->parts[i]->value));
            if (tweak->index >= in.numVertices() || offset == MFloatVector()) continue;
            if (!points) points = &edit().EditPoints();
            (*points)[static_cast<size_t>(tweak->index)] += offset;
        }
    }

    void AddGroups(auto& edit) {
        const Slot* shown = node_.FindPlug("instObjGroups").Element(0).Find();
        if (!shown) return;
        for (const auto& group : shown->parts[0]->parts) {
            const auto list = DataOf<ComponentListData>(Pull(*group->parts[0]));
            const int id = static_cast<int>(NumberOf(Pull(*group->parts[1])));
            if (list && !list->value.empty()) edit().SetGroup(id, list->value[0]);
        }
    }
};

AttributePtr NamesOfSets(const char* longName, const char* shortName, const char* nameOfSet,
                         const char* shortNameOfSet) {
    const auto sets = PlainAttribute(longName, shortName, AttributeKind::Compound);
    sets->isArray = true;
    sets->AddChild(TypedAttribute(nameOfSet, shortNameOfSet, MFnData::kString));
    for (Attribute* a : {sets.get(), sets->children[0].get()})
        a->isStorable = a->isWritable = false;
    return sets;
}

AttributePtr Tweaks() {
    const auto pnts = std::make_shared<Attribute>("pnts", "pt", AttributeKind::Numeric);
    pnts->numeric = MFnNumericData::k3Float;
    for (const char c : {'x', 'y', 'z'})
        pnts->AddChild(
            NumericAttribute(std::string("pnt") + c, std::string("p") + c, MFnNumericData::kFloat));
    pnts->isArray = true;
    return pnts;
}

}  // namespace

void RegisterMeshNode(NodeTypes& types) {
    NodeType& mesh = types.Make("mesh", 0x444d5348, MFn::kMesh, "shape");
    mesh.Add(TypedAttribute("inMesh", "i", MFnData::kMesh));
    for (const auto& [longName, shortName] : {std::pair{"outMesh", "o"}, {"worldMesh", "w"}}) {
        Attribute* out = mesh.Add(TypedAttribute(longName, shortName, MFnData::kMesh));
        out->isStorable = out->isWritable = false;
    }
    mesh.Find("worldMesh")->isArray = true;
    mesh.Add(Tweaks());
    mesh.Add(NumericAttribute("tweakLocation", "twl", MFnNumericData::k3Float, 0, "XYZ"));
    mesh.Find("tweakLocation")->isStorable = false;
    mesh.Add(NamesOfSets("uvSet", "uvst", "uvSetName", "uvsn"));
    mesh.Add(NamesOfSets("colorSet", "clst", "colorName", "clsn"));
    mesh.Add(TypedAttribute("currentUVSet", "cuvs", MFnData::kString));
    mesh.Add(TypedAttribute("currentColorSet", "ccls", MFnData::kString));
    mesh.Add(NumericAttribute("displayColors", "dcol", MFnNumericData::kBoolean));
    mesh.Affects({"inMesh", "pnts", "instObjGroups", "currentUVSet", "currentColorSet"},
                 {"outMesh", "worldMesh"});
    mesh.Affects({"inMesh"}, {"uvSet", "colorSet"});
    mesh.maker = [](Node& node) { return std::make_unique<MeshLogic>(node); };
}

}  // namespace minihost
