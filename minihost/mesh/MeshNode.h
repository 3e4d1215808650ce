#pragma once

#include "minihost/dag/DagNode.h"
#include "minihost/dag/DagTypes.h"
#include "minihost/mesh/MeshData.h"

namespace minihost {

/// Registers "mesh".
void RegisterMeshNode(NodeTypes& types);

}  // namespace minihost
