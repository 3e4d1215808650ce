#include "core/mesh/LEdgeListFlagged.h"

#include <algorithm>
#include <new>
#include <utility>

namespace VantrelSDK {

namespace {

/// A visit to each edge of each face whose lower end is `low`, face by face, ascending:
/// visit(higher end, face, place of the edge in it).
template <class Visit>
void VisitEdgesFrom(int low, std::span<const LFace> faces, const LAdjFaceList& adj, Visit&& visit) {
    for (const int f : adj.GetAdjFacesForVert(low))
        for (int k = 0; k < 3; ++k) {
            const auto ends = std::minmax({faces[f].v[k], faces[f].v[(k + 1) % 3]});
            if (ends.first == low && ends.second < adj.nverts()) visit(ends.second, f, k);
        }
}

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
    int count() const { return count_; }

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
        EdgeNumbers counted(nverts);
        for (int low = 0; low < nverts; ++low)
            VisitEdgesFrom(low, faces, adj, [&](int high, int f, int) {
                if (masks.Pass(f)) counted.Take(low, high);
            });
        edges_.resize(counted.count());
        faces_.resize(faces.size(), Face{-1, -1, -1});

        EdgeNumbers numbers(nverts);
        for (int low = 0; low < nverts; ++low) {
            VisitEdgesFrom(low, faces, adj, [&](int high, int f, int k) {
                if (masks.Pass(f)) Add(numbers.Take(low, high), faces[f], f, k);
            });
            VisitEdgesFrom(low, faces, adj, [&](int high, int f, int k) {
                faces_[f][k] = numbers.First(low, high);
            });
        }
    } catch (const std::bad_alloc&) {
        edges_ = {};
        faces_ = {};
    }
}

void LEdgeListFlagged::Add(int e, const LFace& face, int f, int k) {
    Edge& edge = edges_[e];
    if (edge.index < 0) {
        edge.index = e;
        edge.v[0] = face.v[k];
        edge.v[1] = face.v[(k + 1) % 3];
        edge.faces[0] = f;
    } else {
        edge.faces[1] = f;
        edge.flags |= kHasSecondFace;
    }
    if (face.IsEdgeVisible(k)) edge.flags |= kVisible;
    if (face.IsEdgeGluing(k)) edge.flags |= kGluing;
}

}  // namespace VantrelSDK
