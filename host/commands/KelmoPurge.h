#pragma once

#include "host/commands/NodeCommand.h"

namespace VantrelSDK {

/// Deletes a node of either class; what fed it then feeds the mesh. Undo brings it back.
MStatus DeleteKelmo(const MObject& node);

// Flags of the command Kelmo. With -zerotweak the work delta of each node first becomes part of the
// tweak before it, so that the mesh keeps the shape.

MStatus PurgeAll(NodeCall& call);
MStatus PurgeThis(NodeCall& call);
MStatus PurgeNamed(NodeCall& call);

}  // namespace VantrelSDK
