#pragma once

#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/io/PolyMesh.h"

// What has to hold of any mesh that a reader lets through.

namespace VantrelSDK {

inline void Demand(bool holds) {
    if (!holds) std::abort();
}

template <class T>
bool SameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

inline void CheckMesh(const PolyMesh& mesh) {
    Demand(mesh.colours.empty() || mesh.colours.size() == mesh.positions.size());
    Demand(mesh.cornerUVs.empty() || mesh.cornerUVs.size() == mesh.cornerVerts.size());
    Demand(mesh.polygonStart.front() == 0);
    Demand(mesh.polygonStart.back() == static_cast<int>(mesh.cornerVerts.size()));
    for (int p = 0; p < mesh.NumPolygons(); ++p)
        Demand(mesh.polygonStart[p + 1] - mesh.polygonStart[p] >= 3);
    for (const int v : mesh.cornerVerts)
        Demand(v >= 0 && v < static_cast<int>(mesh.positions.size()));
    for (const int uv : mesh.cornerUVs) Demand(uv >= -1 && uv < static_cast<int>(mesh.uvs.size()));
}

}  // namespace VantrelSDK
