#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/mesh/LIndexRows.h"
#include "core/mesh/LMeshTopology.h"

namespace VantrelSDK {

/// Makes, for each vertex of a level of split quads, the list of the other vertices of the quads
/// around it, each once. All of it may throw std::bad_alloc.
///
/// Where the quads close around a vertex, which is almost everywhere, that is, quad by quad, the
/// next corner and the one across; the others are gathered one by one.
class QuadRings {
  public:
    explicit QuadRings(const LMeshTopology& topology);

    /// Gathers the lists of the others, `maxRing` vertices at most. stays(number of quads, list)
    /// is asked about each of them, and about those with three quads: true leaves the list empty,
    /// as it is for a vertex with fewer quads.
    template <class Stays>
    void GatherOpen(size_t maxRing, const Stays& stays);
    /// Call it once, after GatherOpen.
    LIndexRows Fill();

  private:
    /// What one look at all quads tells of a vertex.
    struct Fan {
        /// Neighbours that follow it in a quad less those that go before it, as a sum of mixed
        /// numbers: zero where the quads close around it.
        uint64_t open = 0;
        uint32_t nquads = 0;
    };
    struct OpenRing {
        int vert;
        std::vector<int> ring;
    };
    bool IsOpen(int v) const { return fans_[v].open != 0 || fans_[v].nquads <= 3; }
    std::vector<std::pair<int, int>> QuadsOfOpenVerts() const;
    void SizeRows();
    void FillRows();
    void RemoveDoubles();

    const std::vector<LFace>& faces_;
    int nquads_;
    std::vector<Fan> fans_;
    /// By vertex, ascending; those that stay are left out.
    std::vector<OpenRing> openRings_;
    std::vector<uint32_t> starts_;
    std::vector<int> entries_;
};

template <class Stays>
void QuadRings::GatherOpen(size_t maxRing, const Stays& stays) {
    const std::vector<std::pair<int, int>> around = QuadsOfOpenVerts();
    for (size_t i = 0, end = 0; i < around.size(); i = end) {
        const int v = around[i].first;
        OpenRing open{v, {}};
        for (end = i; end < around.size() && around[end].first == v; ++end) {
            const LFace *a = &faces_[2 * around[end].second], *b = a + 1;
            open.ring.insert(open.ring.end(), {a->v[0], a->v[1], a->v[2], b->v[1]});
        }
        std::sort(open.ring.begin(), open.ring.end());
        open.ring.erase(std::unique(open.ring.begin(), open.ring.end()), open.ring.end());
        std::erase(open.ring, v);
        if (open.ring.size() > maxRing) open.ring.resize(maxRing);
        if (!stays(static_cast<int>(end - i), open.ring)) openRings_.push_back(std::move(open));
    }
}

}  // namespace VantrelSDK
