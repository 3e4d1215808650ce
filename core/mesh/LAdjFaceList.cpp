#include "core/mesh/LAdjFaceList.h"

#include <algorithm>
#include <climits>
#include <new>

#include "core/mesh/SharedFaces.h"

namespace VantrelSDK {

LAdjFaceList::LAdjFaceList(CornerView faces, int nverts) {
    if (faces.size() == 0 || faces.size() > INT_MAX) return;
    const int nfaces = static_cast<int>(faces.size());
    const auto visitCorners = [&](auto&& emit) {
        for (int f = 0; f < nfaces; ++f) {
            const int* v = faces[f];
            for (int k = 0; k < 3; ++k) {
                const bool known = (k > 0 && v[k] == v[0]) || (k > 1 && v[k] == v[1]);
                if (!known && v[k] >= 0 && v[k] < nverts) emit(v[k], f);
            }
        }
    };
    if (rows_.Build(nverts, visitCorners) && nverts > 0) nfaces_ = nfaces;
}

LAdjFaceList2::LAdjFaceList2(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LAdjFaceList(faces, nverts) {
    try {
        SharedFaces shared(faces, *this);
        adjFaces_.resize(nfaces());
        for (int a = 0; a < this->nverts(); ++a) FindNeighbours(a, faces, masks, shared);
    } catch (const std::bad_alloc&) {
    }
}

void LAdjFaceList2::FindNeighbours(int a, std::span<const LFace> faces, const ElementMasks& masks,
                                   SharedFaces& shared) {
    shared.Load(a);
    for (const int f : GetAdjFacesForVert(a)) {
        if (!masks.Pass(f)) continue;
        for (int k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax({faces[f].v[k], faces[f].v[(k + 1) % 3]});
            if (low != a || high >= nverts()) continue;
            const int neighbour = shared.Get(high).Other(f);
            if (neighbour < 0) continue;
            adjFaces_[f].faces[k] = neighbour;
            adjFaces_[f].has[k] = 1;
        }
    }
}

}  // namespace VantrelSDK
