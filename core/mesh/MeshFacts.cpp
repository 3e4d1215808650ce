#include "core/mesh/MeshFacts.h"

#include <algorithm>

#include "core/mesh/LIndexRows.h"

namespace VantrelSDK {

namespace {

/// Counts the sides of each edge: edges are gathered at their lower vertex.
void CountEdges(const PolyMesh& mesh, MeshFacts& facts) {
    LIndexRows edges;
    edges.Build(static_cast<int>(mesh.positions.size()), [&](const auto& add) {
        for (int p = 0; p < mesh.NumPolygons(); ++p) {
            const int first = mesh.polygonStart[p], last = mesh.polygonStart[p + 1] - 1;
            for (int i = first; i <= last; ++i) {
                const int a = mesh.cornerVerts[i], b = mesh.cornerVerts[i < last ? i + 1 : first];
                if (a != b) add(std::min(a, b), std::max(a, b));
            }
        }
    });
    std::vector<int> ends;
    for (int v = 0; v < edges.NumRows(); ++v) {
        const auto row = edges.Row(v);
        ends.assign(row.begin(), row.end());
        std::sort(ends.begin(), ends.end());
        for (auto it = ends.begin(); it != ends.end();) {
            const auto next = std::upper_bound(it, ends.end(), *it);
            facts.openEdges += next - it == 1;
            facts.nonManifoldEdges += next - it > 2;
            it = next;
        }
    }
}

}  // namespace

MeshFacts CountFacts(const PolyMesh& mesh) {
    MeshFacts facts;
    facts.vertices = static_cast<long long>(mesh.positions.size());
    facts.polygons = mesh.NumPolygons();
    for (int p = 0; p < mesh.NumPolygons(); ++p) {
        const int arity = mesh.polygonStart[p + 1] - mesh.polygonStart[p];
        ++facts.byArity[arity];
        facts.triangles += arity - 2;
    }
    facts.uvSets = !mesh.cornerUVs.empty();
    facts.uvs = static_cast<long long>(mesh.uvs.size());
    facts.colours = !mesh.colours.empty();
    if (!mesh.positions.empty()) facts.min = facts.max = mesh.positions[0];
    for (const LPoint3& p : mesh.positions) {
        facts.min = {std::min(facts.min.x, p.x), std::min(facts.min.y, p.y),
                     std::min(facts.min.z, p.z)};
        facts.max = {std::max(facts.max.x, p.x), std::max(facts.max.y, p.y),
                     std::max(facts.max.z, p.z)};
    }
    CountEdges(mesh, facts);
    return facts;
}

}  // namespace VantrelSDK
