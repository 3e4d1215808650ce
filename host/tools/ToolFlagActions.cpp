#include "host/tools/ToolFlagActions.h"

#include <maya/MDoubleArray.h>
#include <maya/MFloatArray.h>
#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>
#include <maya/MRampAttribute.h>

#include <algorithm>
#include <charconv>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/NodeProtocol.h"
#include "host/gl/MLDisplayCache.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

constexpr int kFirstPaintMode = 8;

MStatus Tell(double value) {
    MPxCommand::setResult(value);
    return MS::kSuccess;
}

MStatus TellWhole(int value) {
    MPxCommand::setResult(value);
    return MS::kSuccess;
}

int PaintMode(const ToolCall& call) {
    const MPlug last = call.Plug(&N::m_moLastSculptMode2);
    const int mode = last.isNull() ? -1 : last.asInt();
    return IsPaintTransformMode(mode) ? mode : kFirstPaintMode;
}

struct RampEntry {
    float value, position;
    int interpolation;
};

/// None where the text is no curve.
std::optional<std::vector<RampEntry>> ReadRamp(const std::string& text) {
    std::vector<float> numbers;
    const char *at = text.data(), *end = at + text.size();
    while (at < end) {
        float number = 0;
        while (at < end && *at == ' ') ++at;
        const auto [behind, error] = std::from_chars(at, end, number);
        if (error != std::errc() || !(number >= 0 && number <= 3)) return {};
        numbers.push_back(number);
        at = behind;
        if (at < end && *at++ != ',') return {};
    }
    std::vector<RampEntry> entries;
    if (numbers.empty() || numbers.size() % 3 != 0) return {};
    for (size_t i = 0; i < numbers.size(); i += 3)
        entries.push_back({std::min(numbers[i], 1.0f), std::min(numbers[i + 1], 1.0f),
                           static_cast<int>(numbers[i + 2])});
    return entries;
}

std::string Text(float number) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

/// Turns what the brush affects to colours while it lives.
class AffectsColor {
  public:
    explicit AffectsColor(const ToolCall& call) : plug_(call.Plug(&N::m_moAffectVertColor)) {
        if (plug_.isNull()) return;
        was_ = plug_.asBool();
        if (!was_) plug_.setValue(true);
    }
    ~AffectsColor() {
        if (!plug_.isNull() && !was_) plug_.setValue(false);
    }
    AffectsColor(const AffectsColor&) = delete;
    AffectsColor& operator=(const AffectsColor&) = delete;
    explicit operator bool() const { return !plug_.isNull(); }

  private:
    MPlug plug_;
    bool was_ = true;
};

MStatus WithColor(ToolCall& call, int command) {
    const AffectsColor colors(call);
    if (!colors) return MS::kFailure;
    KeepPaintEdit(*call.tool.node(), command);
    NodeProtocol(call.tool.node()->getThisMObject()).Run(command);
    return MS::kSuccess;
}

/// The element for what the brush affects: geometry, colours, a stencil.
MPlug ChannelOf(const ToolCall& call, N::Member array) {
    const MPlug all = call.Plug(array);
    if (all.isNull()) return all;
    const bool stencil = call.Plug(&N::m_moAffectStencil).asBool(),
               color = call.Plug(&N::m_moAffectVertColor).asBool();
    return all.elementByLogicalIndex(stencil ? 2 : color ? 1 : 0);
}

}  // namespace

MStatus EditMode(ToolCall& call) {
    const int mode = static_cast<int>(call.Number());
    if (!IsSculptTransformMode(mode) && !IsPaintTransformMode(mode))
        return call.Fail("there is no brush mode with this number; modes are 0 to 19");
    if (call.Plug(&N::m_moSculptMode).isNull()) return MS::kFailure;
    call.tool.setBrushMode(mode);
    return MS::kSuccess;
}

MStatus TellMode(ToolCall& call) {
    return call.Plug(&N::m_moSculptMode).isNull() ? MS::kFailure : TellWhole(call.tool.brushMode());
}

MStatus EditSize(ToolCall& call) {
    call.tool.setToolSize(call.Number(), -1);
    return MS::kSuccess;
}

MStatus TellSize(ToolCall& call) {
    return Tell(call.tool.getToolSize(-1));
}

MStatus EditPaintSize(ToolCall& call) {
    call.tool.setToolSize(call.Number(), PaintMode(call));
    return MS::kSuccess;
}

MStatus TellPaintSize(ToolCall& call) {
    return Tell(call.tool.getToolSize(PaintMode(call)));
}

MStatus EditPressure(ToolCall& call) {
    call.tool.setPaintPressure(call.Number());
    return MS::kSuccess;
}

MStatus TellPressure(ToolCall& call) {
    return Tell(call.tool.getPaintPressure());
}

MStatus EditResizing(ToolCall& call) {
    call.tool.setResizeHotKeyPressed(call.Number() != 0);
    return MS::kSuccess;
}

MStatus TellResizing(ToolCall& call) {
    return TellWhole(call.tool.resizeKey());
}

template <N::Member ramp>
MStatus EditRamp(ToolCall& call) {
    const auto entries = ReadRamp(call.Text().asChar());
    if (!entries)
        return call.Fail(
            "a curve is \"value,position,interpolation,...\" with values and positions from 0 to"
            " 1 and interpolations 0 to 3");
    const MPlug plug = call.Plug(ramp);
    if (plug.isNull()) return MS::kFailure;
    MRampAttribute curve(plug);
    MIntArray indices, kinds;
    MFloatArray positions, values;
    curve.getEntries(indices, positions, values, kinds);
    MIntArray newKinds;
    MFloatArray newPositions, newValues;
    for (const RampEntry& entry : *entries) {
        newPositions.append(entry.position);
        newValues.append(entry.value);
        newKinds.append(entry.interpolation);
    }
    // The curve has a shape all the while.
    curve.addEntries(newPositions, newValues, newKinds);
    curve.deleteEntries(indices);
    return MS::kSuccess;
}

template <N::Member ramp>
MStatus TellRamp(ToolCall& call) {
    const MPlug plug = call.Plug(ramp);
    if (plug.isNull()) return MS::kFailure;
    MIntArray indices, kinds;
    MFloatArray positions, values;
    MRampAttribute(plug).getEntries(indices, positions, values, kinds);
    std::vector<unsigned> order(positions.length());
    std::iota(order.begin(), order.end(), 0u);
    std::ranges::stable_sort(order, {}, [&](unsigned i) { return positions[i]; });
    std::string text;
    for (const unsigned i : order)
        text += (text.empty() ? "" : ",") + Text(values[i]) + "," + Text(positions[i]) + "," +
                std::to_string(kinds[i]);
    MPxCommand::setResult(MString(text.c_str()));
    return MS::kSuccess;
}

template MStatus EditRamp<&N::m_moFalloff>(ToolCall&);
template MStatus EditRamp<&N::m_moFalloff2>(ToolCall&);
template MStatus TellRamp<&N::m_moFalloff>(ToolCall&);
template MStatus TellRamp<&N::m_moFalloff2>(ToolCall&);

MStatus EditColor(ToolCall& call) {
    const MPlug color = call.Plug(&N::m_moVertexPaintColor);
    if (color.isNull()) return MS::kFailure;
    for (unsigned c = 0; c < 3; ++c) color.child(c).setValue(call.Number());
    return MS::kSuccess;
}

MStatus TellColor(ToolCall& call) {
    const MPlug color = call.Plug(&N::m_moVertexPaintColor);
    if (color.isNull()) return MS::kFailure;
    MDoubleArray parts;
    for (unsigned c = 0; c < 3; ++c) parts.append(color.child(c).asDouble());
    MPxCommand::setResult(parts);
    return MS::kSuccess;
}

void KeepPaintEdit(const MLNode& node, int command) {
    const bool edits = command >= 106 && command <= 108,
               converts = command == 109 || command == 110;
    const bool affects = node.getAffectVertexColor() || node.getAffectStencil();
    if (node.lcolorDelta() && (converts || (edits && affects)))
        MGlobal::executeCommand("KelmoStroke", false, true);
}

MStatus FillColor(ToolCall& call) {
    return WithColor(call, 108);
}

MStatus ClearColor(ToolCall& call) {
    return WithColor(call, 106);
}

template <N::Member array>
MStatus EditChannel(ToolCall& call) {
    MPlug element = ChannelOf(call, array);
    return element.isNull() ? MS::kFailure : element.setValue(call.Number());
}

template <N::Member array>
MStatus TellChannel(ToolCall& call) {
    const MPlug element = ChannelOf(call, array);
    return element.isNull() ? MS::kFailure : TellWhole(element.asInt());
}

template MStatus EditChannel<&N::m_moUseShadow>(ToolCall&);
template MStatus EditChannel<&N::m_moUseSSAO>(ToolCall&);
template MStatus TellChannel<&N::m_moUseShadow>(ToolCall&);
template MStatus TellChannel<&N::m_moUseSSAO>(ToolCall&);

MStatus EditNameIndex(ToolCall& call) {
    call.tool.nameIndex = static_cast<int>(call.Number());
    return MS::kSuccess;
}

MStatus TellNameIndex(ToolCall& call) {
    return TellWhole(call.tool.nameIndex);
}

MStatus EditTargetName(ToolCall& call) {
    if (call.Plug(&N::m_moParam0).isNull()) return MS::kFailure;
    NodeProtocol protocol(call.tool.node()->getThisMObject());
    protocol.SetIndex(call.tool.nameIndex);
    protocol.SetText(call.Text());
    protocol.Ask(8);
    return MS::kSuccess;
}

MStatus TellTargetName(ToolCall& call) {
    if (call.Plug(&N::m_moParam0).isNull()) return MS::kFailure;
    NodeProtocol protocol(call.tool.node()->getThisMObject());
    protocol.SetIndex(call.tool.nameIndex);
    protocol.Ask(7);
    MPxCommand::setResult(protocol.text());
    return MS::kSuccess;
}

MStatus TellShadowOK(ToolCall&) {
    return TellWhole(MLDisplayCache::shared().shadow.IsInitOK());
}

MStatus TellSSAOOK(ToolCall&) {
    const auto& shared = MLDisplayCache::shared();
    return TellWhole(shared.ssao.IsInitOK() && shared.ssaodepth.IsInitOK());
}

MStatus TellIsMulti(ToolCall& call) {
    const MPlug multi = call.Plug(&N::m_moMultiSculpt);
    return multi.isNull() ? MS::kFailure : TellWhole(multi.asInt());
}

template <bool KelmoToolContext::*field>
MStatus EditField(ToolCall& call) {
    call.tool.*field = call.Number() != 0;
    return MS::kSuccess;
}

template <bool KelmoToolContext::*field>
MStatus TellField(ToolCall& call) {
    return TellWhole(call.tool.*field);
}

#define FIELD(name)                                                 \
    template MStatus EditField<&KelmoToolContext::name>(ToolCall&); \
    template MStatus TellField<&KelmoToolContext::name>(ToolCall&);
FIELD(trackStencil)
FIELD(rotateStencil)
FIELD(resizeStencil)
FIELD(reopacStencil)
#undef FIELD

}  // namespace VantrelSDK
