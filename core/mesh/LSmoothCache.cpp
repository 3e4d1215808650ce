#include "core/mesh/LSmoothCache.h"

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

}  // namespace VantrelSDK
