#include "core/mesh/LEdgeListFlagged.h"

#include <new>
#include <utility>

#include "core/io/HugePages.h"
#include "core/mesh/EdgeVisits.h"

namespace VantrelSDK {

namespace {

/// Numbers the edges. For the lower vertex at hand it knows, by the higher one, the first edge of
/// the two and the one that still wants a second face, so that no list of edges is ever searched.
class EdgeNumbers {
  public:
    explicit EdgeNumbers(int nverts) : met_(nverts) {}

    /// The edge that the next face on these two vertices goes to; a new one is the next number.
    int Take(int low, int high) {
        Met& met = met_[high];
        if (met.low != low) met = {low, count_, -1};
        if (met.wanting < 0) return met.wanting = count_++;
        return std::exchange(met.wanting, -1);
    }
    /// The first edge that was taken for them, or -1.
    int First(int low, int high) const { return met_[high].low == low ? met_[high].first : -1; }

  private:
    struct Met {
        int low = -1, first = -1, wanting = -1;
    };
    std::vector<Met> met_;
    int count_ = 0;
};

}  // namespace

LEdgeListFlagged::LEdgeListFlagged(std::span<const LFace> faces, int nverts,
                                   const ElementMasks& masks) {
    const LAdjFaceList adj(faces, nverts);
    if (adj.nfaces() == 0) return;
    try {
        ReserveLarge(edges_, faces.size() * 3 / 2);
        ReserveLarge(faces_, faces.size());
        faces_.resize(faces.size(), Face{-1, -1, -1});
        EdgeNumbers numbers(nverts);
        const bool all = masks.include.empty() && masks.exclude.empty();
        for (int low = 0; low < nverts; ++low) {
            VisitEdgesFrom(low, faces, adj, [&](int high, int f, int k) {
                if (!all && !masks.Pass(f)) return;
                Add(numbers.Take(low, high), faces[f], f, k);
                faces_[f][k] = numbers.First(low, high);
            });
            if (all) continue;
            VisitEdgesFrom(low, faces, adj, [&](int high, int f, int k) {
                faces_[f][k] = numbers.First(low, high);
            });
        }
        edges_.shrink_to_fit();
    } catch (const std::bad_alloc&) {
        edges_ = {};
        faces_ = {};
    }
}

void LEdgeListFlagged::Add(int e, const LFace& face, int f, int k) {
    if (e == GetNumEdges()) {
        Edge& edge = edges_.emplace_back();
        edge.index = e;
        edge.v[0] = face.v[k];
        edge.v[1] = face.v[(k + 1) % 3];
        edge.faces[0] = f;
    } else {
        edges_[e].faces[1] = f;
        edges_[e].flags |= kHasSecondFace;
    }
    Edge& edge = edges_[e];
    if (face.IsEdgeVisible(k)) edge.flags |= kVisible;
    if (face.IsEdgeGluing(k)) edge.flags |= kGluing;
}

}  // namespace VantrelSDK
