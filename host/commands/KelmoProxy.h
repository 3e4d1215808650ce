#pragma once

#include "host/commands/NodeCommand.h"

namespace VantrelSDK {

// Flag -proxy of the command Kelmo: a second mesh that shows the base level, whatever level the
// node's own mesh shows. A skin behind the node then moves the proxy, which plays faster.

MStatus TellProxy(NodeCall& call);
MStatus MakeOrDeleteProxy(NodeCall& call);

}  // namespace VantrelSDK
