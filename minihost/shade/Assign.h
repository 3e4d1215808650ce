#pragma once

#include <string>
#include <vector>

#include "minihost/graph/Modifier.h"

namespace minihost {

/// How a mesh is shaded.
struct Shading {
    /// The groups that it is a member of, in the order of its own connections.
    std::vector<NodePtr> groups;
    /// For each polygon a number into `groups`, -1 for none.
    std::vector<int> ofPolygon;
};
Shading ShadingOf(Node& mesh);

/// A shading group with a new shader of a type ("lambert"), in the render partition. Null where
/// there is no such type, or it shades no surface. `name` names the shader.
NodePtr CreateShadingGroup(Modifier& edits, const std::string& shaderType,
                           const std::string& name = {});
/// A "file" with a "place2dTexture" that tells it where it lies.
NodePtr CreateFileTexture(Modifier& edits, const std::string& file);
/// Puts a mesh into a shading group and out of those that it was in.
bool AssignShading(Modifier& edits, const NodePtr& mesh, const NodePtr& group);
/// The same for some polygons; the others stay where they are. `polygons` may be in any order.
bool AssignShading(Modifier& edits, const NodePtr& mesh, const NodePtr& group,
                   const std::vector<int>& polygons);
/// A new shader for a mesh: CreateShadingGroup and AssignShading.
NodePtr CreateAndAssignShader(Modifier& edits, const std::string& shaderType, const NodePtr& mesh);

}  // namespace minihost
