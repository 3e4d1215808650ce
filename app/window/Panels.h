#pragma once

#include "minihost/window/Surroundings.h"

namespace kelmo {

struct Desk;

/// Where the parts of the window are, in its pixels.
struct Layout {
    Layout(const Desk& desk, int width, int height);

    minihost::WindowPlace menu, left, right, status, view;
    bool hasLeft = false, hasRight = false, hasBars = false;
};

/// The bars and docks around the view. Within a frame of Dear ImGui.
void DrawPanels(Desk& desk, const Layout& layout);

/// The name, what it does and the key of an action, when the pointer is over what was just drawn.
struct Action;
void Tip(const Action& action);
void Tip(const char* text);

}  // namespace kelmo
