#pragma once

#include <maya/MObject.h>

#include <memory>
#include <vector>

#include "core/mesh/LMesh.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

/// The triangles of a host mesh (data or node), in order of its polygons; vertices in object space.
/// Edges that are not the polygon's own are gluing.
class MLMesh : public LMesh {
  public:
    explicit MLMesh(const MObject& mesh);

    /// For each polygon its first face, and behind them the number of faces.
    std::vector<int> firstFaces;
};

/// The positions of a host mesh, by vertex; empty for what is no mesh.
std::vector<LPoint3> ReadPositions(const MObject& mesh);

/// A UV set of a host mesh, by its place among them; faces of polygons without UVs have none. Null,
/// which is told, where there is no such set.
std::unique_ptr<LUVSubdivChannel> ReadUVSet(const MObject& mesh, int set);

}  // namespace VantrelSDK
