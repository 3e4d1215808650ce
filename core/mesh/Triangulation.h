#pragma once

#include "core/io/PolyMesh.h"
#include "core/mesh/LMesh.h"
#include "core/subdiv/LUVChannel.h"

namespace VantrelSDK {

/// The triangles of a polygon mesh, in order of the polygons: each polygon is a fan from its first
/// corner, so that polygon p has the faces FirstFaceOf(p) up to FirstFaceOf(p + 1).
///
/// A triangle's edge whose ends follow each other on the polygon is visible, any other is gluing.
LMesh Triangulate(const PolyMesh& polygons);

/// The UV faces of those triangles; empty when no corner has a UV.
std::vector<LUVChannel::MFace> TriangulateUVs(const PolyMesh& polygons);

/// The first face of polygon p; p may be the number of polygons.
inline int FirstFaceOf(const PolyMesh& polygons, int p) {
    return polygons.polygonStart[p] - 2 * p;
}

}  // namespace VantrelSDK
