#pragma once

#include "minihost/graph/NodeType.h"

namespace minihost {

/// Registers what all nodes have ("dependNode"), and the hierarchy's own types: "dagNode",
/// "transform", "joint", "shape", "locator", "camera".
void RegisterDagTypes(NodeTypes& types);

}  // namespace minihost
