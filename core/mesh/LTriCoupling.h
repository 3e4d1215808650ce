#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// How the triangles of a level pair up into the quads that they were cut from; the rest are
/// singles. Every face is in one pair or a single. Immutable.
class LTriCoupling {
  public:
    /// Which edges of the two triangles of a pair are the one they share.
    struct SharedEdge {
        int first, second;
    };

    LTriCoupling() = default;
    /// Pairs the faces, which name vertices 0 to nverts - 1, by their flags (see
    /// sortTriFacesForCoupling). May throw std::bad_alloc.
    LTriCoupling(std::span<const LFace> faces, int nverts);
    /// The coupling of split quads: faces 2i and 2i + 1 are pair i, and edge 2 of both is shared.
    static LTriCoupling Sequential(int npairs);

    int NumPairs() const { return npairs_; }
    int NumSingles() const { return static_cast<int>(ncoupling_.size()); }
    int NumFaces() const { return 2 * npairs_ + NumSingles(); }
    bool IsSequential() const { return coupling_.empty() && ncoupling_.empty(); }

    /// The two faces of pair i.
    std::pair<int, int> Pair(int i) const {
        if (coupling_.empty()) return {2 * i, 2 * i + 1};
        return {coupling_[2 * i], coupling_[2 * i + 1]};
    }
    SharedEdge Shared(int i) const {
        if (shared_.empty()) return {2, 2};
        return {shared_[i] & 3, shared_[i] >> 2};
    }
    /// The face of single i.
    int Single(int i) const { return ncoupling_[i]; }
    /// The place of a face among the paired ones (2i or 2i + 1 in pair i), or -1.
    int couplingLookup(int f) const {
        if (IsSequential()) return f;
        return places_[f] >= 0 ? places_[f] : -1;
    }
    /// The place of a face among the singles, or -1.
    int ncouplingLookup(int f) const {
        return IsSequential() || places_[f] >= 0 ? -1 : ~places_[f];
    }

  private:
    void sortTriFacesForCoupling(std::span<const LFace> faces, int nverts);
    /// Makes the pairs whose shared edge has `wanted` of both sides.
    template <class Wanted>
    void CoupleAcross(std::span<const LFace> faces, const class LAdjFaceList2& adj,
                      std::vector<uint8_t>& taken, Wanted wanted);

    int npairs_ = 0;
    /// Two faces a pair; empty when sequential.
    std::vector<int> coupling_;
    std::vector<int> ncoupling_;
    /// Shared edges of each pair, two bits each.
    std::vector<uint8_t> shared_;
    /// By face: its place in coupling_, or the complement of that in ncoupling_.
    std::vector<int> places_;
};

}  // namespace VantrelSDK
