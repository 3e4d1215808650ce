#include "maya/MRenderUtil.h"

#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/shade/FileTexture.h"

namespace {

using minihost::Node;
using minihost::NodePtr;
using minihost::Slot;

/// The plug of a name, or what feeds it; null for none.
const Slot* Network(const std::string& name) {
    const size_t dot = name.rfind('.');
    if (dot == name.npos) return nullptr;
    const NodePtr node = minihost::Host::Get().scene.Find(name.substr(0, dot));
    const Slot* slot = node ? node->FindSlot(name.substr(dot + 1)) : nullptr;
    return slot && slot->source ? slot->source : slot;
}

bool IsColor(const Slot& slot) {
    return !slot.IsArray() && slot.parts.size() == 3 && slot.parts[0]->IsLeaf();
}

}  // namespace

MStatus MRenderUtil::sampleShadingNetwork(MString plug, int samples, bool, bool, MFloatMatrix&,
                                          MFloatPointArray*, MFloatArray* us, MFloatArray* vs,
                                          MFloatVectorArray*, MFloatPointArray*, MFloatVectorArray*,
                                          MFloatVectorArray*, MFloatArray*,
                                          MFloatVectorArray& colors,
                                          MFloatVectorArray& transparencies) {
    colors.clear();
    transparencies.clear();
    const auto count = static_cast<unsigned>(samples);
    if (samples < 0 || !us || !vs || us->length() < count || vs->length() < count)
        return MS::kInvalidParameter;
    const Slot* slot = Network(plug.str());
    if (!slot || !IsColor(*slot)) return MS::kFailure;
    const bool isOut = slot->attribute->longName == "outColor";
    const bool isFile = slot->node->type().IsA("file");
    if (isOut && !isFile) return MS::kFailure;
    minihost::FileTexture texture;
    if (isOut && !texture.Open(*slot->node).empty()) return MS::kFailure;
    MFloatVector plain;
    for (unsigned i = 0; i < 3; ++i)
        plain[i] = static_cast<float>(NumberOf(minihost::Pull(*slot->parts[i])));
    colors.setLength(count);
    transparencies.setLength(count);
    for (unsigned i = 0; i < count; ++i) {
        float alpha = 1;
        colors[i] = isOut ? texture.At((*us)[i], (*vs)[i], alpha) : plain;
        transparencies[i] = {1 - alpha, 1 - alpha, 1 - alpha};
    }
    return MS::kSuccess;
}
