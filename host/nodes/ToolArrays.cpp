#include "host/nodes/ToolArrays.h"

#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

constexpr unsigned kModes = 20, kWithDefaults = 18, kChannels = 3;

struct ModeDefaults {
    float toolSize, paintPressMult, vertColorStrength, textureStrength;
};

/// By sculpt mode; the last two modes have the attributes' defaults.
constexpr ModeDefaults kDefaults[kWithDefaults] = {
    {0.15f, 0.1f, 0.1f, 0.1f}, {0.15f, 0.1f, 0.1f, 0.1f}, {0.15f, 0.1f, 0.1f, 0.1f},
    {0.15f, 0.1f, 0.1f, 0.1f}, {0.15f, 0.1f, 0.1f, 0.1f}, {0.15f, 0.1f, 0.1f, 0.1f},
    {0.15f, 0.1f, 0.1f, 0.1f}, {0.15f, 0.1f, 0.1f, 0.1f}, {0.05f, 0.1f, 1.5f, 1},
    {0.05f, 0.1f, 1.5f, 1},    {0.05f, 0.1f, 0.1f, 0.1f}, {0.05f, 0.1f, 0.1f, 0.1f},
    {0.1f, 1, 2, 1},           {0.1f, 1, 0.1f, 0.1f},     {0.15f, 1, 1, 1},
    {0.05f, 0.1f, 0.1f, 1},    {0.15f, 0.8f, 0.8f, 0.8f}, {0.1f, 2, 2, 2},
};
/// Where a node from a scene differs.
constexpr unsigned kSmoothBrush = 12, kSharpenBrush = 13;
constexpr float kRestoredSmoothPressure = 2;

/// Calls set(index, element) for the elements of an array that has none.
template <class Set>
void FillArray(const MLNode& node, NodeAttributes::Member attribute, unsigned count,
               const Set& set) {
    MPlug array = node.plug(attribute);
    if (array.numElements() > 0) return;
    if (!array.setNumElements(count))
        return node.Error("can not set number of array elements for ToolSize attribute");
    for (unsigned i = 0; i < count; ++i) {
        MStatus status;
        MPlug element = array.elementByLogicalIndex(i, &status);
        if (!status || !set(i, element)) return node.Error("can not get elementByLogicalIndex");
    }
}

}  // namespace

void FillToolArrays(MLNode& node, bool restored) {
    const auto fill = [&](NodeAttributes::Member attribute, float ModeDefaults::*value) {
        FillArray(node, attribute, kModes, [&](unsigned mode, MPlug& element) {
            float wanted = mode < kWithDefaults ? kDefaults[mode].*value : element.asFloat();
            if (restored && value == &ModeDefaults::paintPressMult) {
                if (mode == kSmoothBrush) wanted = kRestoredSmoothPressure;
                if (mode == kSharpenBrush) wanted = element.asFloat();
            }
            return element.setValue(wanted);
        });
    };
    fill(&NodeAttributes::m_moToolSize, &ModeDefaults::toolSize);
    fill(&NodeAttributes::m_moPaintPressMult, &ModeDefaults::paintPressMult);
    fill(&NodeAttributes::m_moVertColorStrength, &ModeDefaults::vertColorStrength);
    fill(&NodeAttributes::m_moTextureStrength, &ModeDefaults::textureStrength);
    const auto off = [](unsigned, MPlug& element) { return element.setValue(false); };
    FillArray(node, &NodeAttributes::m_moUseShadow, kChannels, off);
    FillArray(node, &NodeAttributes::m_moUseSSAO, kChannels, off);
}

}  // namespace VantrelSDK
