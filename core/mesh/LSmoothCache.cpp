#include "core/mesh/LSmoothCache.h"

#include <numeric>

namespace VantrelSDK {

void LSmoothCache::Iterate(int n, std::span<const int> faces, std::span<const int> verts,
                           const LAdjVertList* adjVerts, const LAdjFaceList* adjFaces, bool add) {
    IterateListed(n, faces, verts, add, [&](int v) {
        if (!adjVerts || !adjFaces) return false;
        const size_t neighbours = adjVerts->GetAdjVertsForVert(v).size();
        const size_t around = adjFaces->GetAdjFacesForVert(v).size();
        return neighbours > 0 && (around <= 2 || around < neighbours);
    });
}

void LSmoothCache::Iterate(int n, std::span<const int> faces, std::span<const int> verts,
                           const LAdjVertList* adjVerts, const LAdjQuadList* adjQuads, bool add) {
    IterateListed(n, faces, verts, add, [&](int v) {
        if (adjQuads) return adjQuads->GetAdjQuadsForVert(v).size() < 4;
        return adjVerts && adjVerts->GetAdjVertsForVert(v).size() < 5;
    });
}

std::vector<LPoint3> SmoothedShape(const LMeshTopology& topology, std::span<const LPoint3> verts,
                                   int iterations) {
    std::vector<LPoint3> smooth(verts.begin(), verts.end());
    if (iterations <= 0) return smooth;
    std::vector<int> all(verts.size()), faces(topology.GetNumFaces());
    std::iota(all.begin(), all.end(), 0);
    std::iota(faces.begin(), faces.end(), 0);
    LSmoothCache cache(topology.GetNumVerts(), topology.Faces(), verts);
    cache.Iterate(iterations, faces, all, &topology.AdjVerts(), &topology.AdjFaces(), true);
    std::copy_n(cache.read(), smooth.size(), smooth.begin());
    return smooth;
}

}  // namespace VantrelSDK
