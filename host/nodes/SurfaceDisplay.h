#pragma once

namespace VantrelSDK {

class MLNode;

// In a session a surface of the node's own stands in the place of the mesh that the node feeds,
// below the same transform. It is nothing that undo or a saved scene knows of.

/// Makes and connects the surface, and hides the mesh. Nothing where the node feeds no mesh, or is
/// of the older class.
void ShowSurface(MLNode& node);
/// Takes away what shows the node, and shows the mesh again where ShowSurface has hidden it.
void HideSurface(MLNode& node);

}  // namespace VantrelSDK
