#include "core/mesh/LTriCoupling.h"

#include <new>

#include "core/mesh/LAdjFaceList.h"

namespace VantrelSDK {

namespace {

bool areEdgesEqual(const LFace& f, int k, const LFace& g, int m) {
    const int a = f.v[k], b = f.v[(k + 1) % 3], c = g.v[m], d = g.v[(m + 1) % 3];
    return (a == c && b == d) || (a == d && b == c);
}

/// The first edges of the two that have the same ends, two bits each.
uint8_t FindSharedEdge(const LFace& f, const LFace& g) {
    for (int k = 0; k < 3; ++k)
        for (int m = 0; m < 3; ++m)
            if (areEdgesEqual(f, k, g, m)) return static_cast<uint8_t>(k | m << 2);
    return 0;
}

}  // namespace

LTriCoupling::LTriCoupling(std::span<const LFace> faces, int nverts) {
    sortTriFacesForCoupling(faces, nverts);
    npairs_ = static_cast<int>(coupling_.size()) / 2;
    shared_.resize(npairs_);
    places_.resize(faces.size());
    for (int i = 0; i < npairs_; ++i) {
        const auto [f, g] = Pair(i);
        shared_[i] = FindSharedEdge(faces[f], faces[g]);
        places_[f] = 2 * i;
        places_[g] = 2 * i + 1;
    }
    for (int i = 0; i < NumSingles(); ++i) places_[ncoupling_[i]] = ~i;
}

LTriCoupling LTriCoupling::Sequential(int npairs) {
    LTriCoupling coupling;
    coupling.npairs_ = npairs;
    return coupling;
}

/// Triangles of one polygon first, by their gluing edges; then what is left, across hidden edges.
void LTriCoupling::sortTriFacesForCoupling(std::span<const LFace> faces, int nverts) {
    const LAdjFaceList2 adj(faces, nverts);
    std::vector<uint8_t> taken(faces.size());
    if (!faces.empty()) {
        if (!adj.GetAdjFacesForFace(0)) throw std::bad_alloc();
        CoupleAcross(faces, adj, taken, [](const LFace& f, int k) { return f.IsEdgeGluing(k); });
        CoupleAcross(faces, adj, taken, [](const LFace& f, int k) { return !f.IsEdgeVisible(k); });
    }
    for (int f = 0; f < static_cast<int>(faces.size()); ++f)
        if (!taken[f]) ncoupling_.push_back(f);
}

template <class Wanted>
void LTriCoupling::CoupleAcross(std::span<const LFace> faces, const LAdjFaceList2& adj,
                                std::vector<uint8_t>& taken, Wanted wanted) {
    for (int f = 0; f < static_cast<int>(faces.size()); ++f)
        for (int k = 0; k < 3 && !taken[f]; ++k) {
            const LAdjFaceList2::AdjFaces& across = *adj.GetAdjFacesForFace(f);
            const int g = across.faces[k];
            if (!wanted(faces[f], k) || !across.has[k] || taken[g]) continue;
            for (int m = 0; m < 3; ++m)
                if (wanted(faces[g], m) && areEdgesEqual(faces[f], k, faces[g], m)) {
                    coupling_.insert(coupling_.end(), {f, g});
                    taken[f] = taken[g] = 1;
                    break;
                }
            // A face with a free neighbour that wouldn't pair is not tried elsewhere.
            break;
        }
}

}  // namespace VantrelSDK
