#pragma once

#include <string>
#include <vector>

#include "minihost/graph/Modifier.h"

namespace minihost {

/// Reads an OBJ file into the scene: a mesh node for each of its meshes, sets of polygons for its
/// groups, shading groups with a lambert, and a file texture where the library names one, for its
/// materials; polygons without a material go to "initialShadingGroup". The transforms, empty with
/// the reason in `error`; the scene is then as it was.
std::vector<NodePtr> ImportObj(Modifier& edits, const std::string& path, std::string& error);

/// Writes mesh nodes as they are shown, in world space. Sets of polygons become groups, shading
/// groups materials; a mesh that is all of "initialShadingGroup" is written without.
bool ExportObj(const std::vector<NodePtr>& meshes, const std::string& path, std::string& error);

}  // namespace minihost
