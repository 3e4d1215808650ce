#pragma once

#include <string>

#include "core/io/PolyMesh.h"
#include "minihost/mesh/MeshData.h"

namespace kelmo {

/// Between the meshes of files and those of the host, in order of vertices and polygons, with one
/// UV set and one colour a vertex.

/// Null with the reason in `error`.
minihost::MeshPtr ToHost(const VantrelSDK::PolyMesh& mesh, std::string& error);
VantrelSDK::PolyMesh FromHost(const minihost::MeshData& mesh);

}  // namespace kelmo
