#pragma once

#include "host/commands/NodeCommand.h"

namespace VantrelSDK {

/// Kelmo: makes nodes, tells of them, and does what concerns a node as a whole. -node names the
/// node, or the mesh, that the other flags work on.
extern const NodeCommandTable kKelmoCmd;

}  // namespace VantrelSDK
