#pragma once

#include "minihost/dag/DagNode.h"

namespace minihost {

class View;

/// Whether a node and what is below it is to be seen.
bool IsShown(DagNode& node);

/// Draws a shape in its own coordinates, in a view that is drawing: a module's own as the module
/// does, a mesh lit in grey, a locator as a cross. Leaves OpenGL's state as it was.
void DrawShape(View& view, DagNode& shape);

}  // namespace minihost
