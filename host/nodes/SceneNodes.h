#pragma once

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

/// Makes every node of a type in the scene do a command; the label is written to `execute`. A node
/// that lacks one of the plugs is passed over with an error that begins with `who`: "WHO: can not
/// find command plug" and `tail`. How many nodes there are.
int SendToNodes(unsigned typeId, int command, int label, const char* who, const char* tail = "\n");

}  // namespace VantrelSDK
