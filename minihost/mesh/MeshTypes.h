#pragma once

#include "minihost/graph/Modifier.h"
#include "minihost/mesh/MeshData.h"

namespace minihost {

/// Registers "mesh" and the primitives "polyCube", "polyPlane", "polySphere".
void RegisterMeshTypes(NodeTypes& types);

/// What a mesh node shows: its input with its own tweaks and object groups, brought up to date.
/// Null where it has none, and for other nodes.
MeshPtr MeshOf(Node& shape);
/// Gives a mesh node without history a mesh. False where a connection feeds it.
bool SetMesh(Modifier& edits, const NodePtr& shape, const MeshPtr& mesh);

/// A transform with a mesh below it. `name` names the transform, and the shape with "Shape" added;
/// empty: "polySurface1".
struct MeshNodes {
    DagNodePtr transform, shape;
    /// What makes the mesh; null for none.
    NodePtr maker;
};
MeshNodes CreateMesh(Modifier& edits, const MeshPtr& mesh, const std::string& name = {},
                     DagNode* parent = nullptr);
/// A "polyCube", "polyPlane" or "polySphere" with its mesh.
MeshNodes CreatePrimitive(Modifier& edits, const std::string& type, const std::string& name = {});

}  // namespace minihost
