#pragma once

#include "minihost/window/WindowEvent.h"

namespace kelmo {

/// Hands what happened in a window to Dear ImGui.
void TellImGui(const minihost::WindowEvent& event);
/// The keys that Dear ImGui's widgets ask for.
void SetImGuiKeys();

}  // namespace kelmo
