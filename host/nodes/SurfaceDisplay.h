#pragma once

#include <maya/MObject.h>

namespace VantrelSDK {

class MLNode;

// In a session a surface of the node's own stands in the place of the mesh that the node feeds,
// below the same transform. It is nothing that undo or a saved scene knows of.

/// Makes and connects the surface. Nothing where the node feeds no mesh, or is of the older class.
void ShowSurface(MLNode& node);
/// Takes away what shows the node.
void HideSurface(MLNode& node);

// When the node's display output is connected or cut, whoever does it: the mesh beside the surface
// is hidden as long as the surface shows the session, unless somebody had hidden it before.

void SurfaceConnected(MLNode& node, const MObject& surface);
void SurfaceDisconnected(MLNode& node, const MObject& surface);

}  // namespace VantrelSDK
