#pragma once

#include <maya/MStatus.h>

namespace VantrelSDK {

/// Keeps the state of nodes in step with scene files: it is written into a node's `blindData` right
/// before a save and dropped after, and taken from there after a scene was opened, imported or
/// referenced. Nodes of the older class that a scene brings are replaced by newer ones.
MStatus RegisterIOCallbacks();
void DeregisterIOCallbacks();

}  // namespace VantrelSDK
