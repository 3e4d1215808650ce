#pragma once

#include <map>

#include "core/io/PolyMesh.h"

namespace VantrelSDK {

/// What is in a polygon mesh, counted.
struct MeshFacts {
    long long vertices = 0, polygons = 0, triangles = 0;
    /// Polygons by their number of corners.
    std::map<int, long long> byArity;
    int uvSets = 0;
    long long uvs = 0;
    /// Every vertex has a colour.
    bool colours = false;
    /// The box of all vertices; zero without any.
    LPoint3 min, max;
    /// Polygon edges with one polygon side, and with more than two. An edge between two corners on
    /// one vertex counts as none.
    long long openEdges = 0, nonManifoldEdges = 0;
};

MeshFacts CountFacts(const PolyMesh& mesh);

}  // namespace VantrelSDK
