#pragma once

#include <string>
#include <vector>

#include "minihost/graph/Modifier.h"

namespace minihost {

/// Puts a deformer of a type, built-in or a module's, at the end of what makes mesh nodes, one
/// geometry each: behind a groupParts, with a set of its own. A mesh without history first gets a
/// copy of its shape, not shown, that the deformer reads. A mesh without a tweak gets one before
/// the deformer, which takes the mesh's own tweaks. Null with the reason in `error` where the type
/// is no deformer or a node no mesh.
NodePtr InsertDeformer(Modifier& edits, const std::string& typeName,
                       const std::vector<NodePtr>& meshes, std::string& error,
                       const std::string& name = {});
/// Lets geometry pass where a deformer was, and deletes its groups and sets; before it is deleted.
void TakeOutDeformer(Modifier& edits, const NodePtr& deformer);
/// The set of a deformer, null for none.
NodePtr DeformerSet(const NodePtr& deformer);

/// Nodes that a mesh node's geometry comes through, from the last to the first, the node itself
/// left out.
std::vector<NodePtr> HistoryOf(const NodePtr& mesh);

/// Moves vertices of a mesh node by the given amounts in its own coordinates: in its tweak, or
/// where it has none in the node's own tweaks.
void MoveVertices(Modifier& edits, const NodePtr& mesh, const std::vector<int>& vertices,
                  const std::vector<MVector>& moves);

}  // namespace minihost
