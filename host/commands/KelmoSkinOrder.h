#pragma once

#include "host/commands/NodeCommand.h"

namespace VantrelSDK {

// Flags of the command Kelmo: which of the two, skin or node, comes first.

/// With a skin after the node, the node goes behind it.
MStatus MoveBehindSkin(NodeCall& call);
/// With a skin before the node, the node goes before it.
MStatus MoveBeforeSkin(NodeCall& call);

}  // namespace VantrelSDK
