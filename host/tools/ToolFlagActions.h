#pragma once

#include "host/tools/ToolFlags.h"

namespace VantrelSDK {

// What flags of the tool's command do that is no plain plug or number.

MStatus EditMode(ToolCall& call);
MStatus TellMode(ToolCall& call);
MStatus EditSize(ToolCall& call);
MStatus TellSize(ToolCall& call);
/// Of the paint mode that was used last.
MStatus EditPaintSize(ToolCall& call);
MStatus TellPaintSize(ToolCall& call);
MStatus EditPressure(ToolCall& call);
MStatus TellPressure(ToolCall& call);
MStatus EditResizing(ToolCall& call);
MStatus TellResizing(ToolCall& call);
/// Ramps as "value,position,interpolation,..." by position.
template <NodeAttributes::Member ramp>
MStatus EditRamp(ToolCall& call);
template <NodeAttributes::Member ramp>
MStatus TellRamp(ToolCall& call);
MStatus EditColor(ToolCall& call);
MStatus TellColor(ToolCall& call);
/// Before a numbered command: one that edits all the paint of a node is one that undo takes back.
void KeepPaintEdit(const MLNode& node, int command);
/// Fill and clear vertex colours, whatever the brush affects.
MStatus FillColor(ToolCall& call);
MStatus ClearColor(ToolCall& call);
/// Arrays with an element for what the brush affects.
template <NodeAttributes::Member array>
MStatus EditChannel(ToolCall& call);
template <NodeAttributes::Member array>
MStatus TellChannel(ToolCall& call);
/// The target that -targname names next.
MStatus EditNameIndex(ToolCall& call);
MStatus TellNameIndex(ToolCall& call);
MStatus EditTargetName(ToolCall& call);
MStatus TellTargetName(ToolCall& call);
MStatus TellShadowOK(ToolCall& call);
MStatus TellSSAOOK(ToolCall& call);
MStatus TellIsMulti(ToolCall& call);
template <bool KelmoToolContext::*field>
MStatus EditField(ToolCall& call);
template <bool KelmoToolContext::*field>
MStatus TellField(ToolCall& call);

}  // namespace VantrelSDK
