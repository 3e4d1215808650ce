#include "core/subdiv/QuadRings.h"

#include <algorithm>

#include "core/io/HugePages.h"

namespace VantrelSDK {

namespace {

/// Calls visit(corner, next, across, previous) for the corners of quad q, each vertex once.
template <class Visit>
void VisitCorners(const LFace* faces, int q, Visit&& visit) {
    const int32_t *a = faces[2 * q].v, *b = faces[2 * q + 1].v;
    const int c0 = a[0], c1 = a[1], c2 = a[2], c3 = b[1];
    visit(c0, c1, c2, c3);
    if (c1 != c0) visit(c1, c2, c3, c0);
    if (c2 != c0 && c2 != c1) visit(c2, c3, c0, c1);
    if (c3 != c0 && c3 != c1 && c3 != c2) visit(c3, c0, c1, c2);
}

/// Scatters numbers so that a sum of them tells a set of numbers from every other (after S. Vigna's
/// splitmix64).
uint64_t Mixed(int i) {
    uint64_t x = (static_cast<uint64_t>(i) + 1) * 0x9e3779b97f4a7c15;
    x = (x ^ x >> 30) * 0xbf58476d1ce4e5b9;
    return x ^ x >> 27;
}

bool HasDouble(const int* row, uint32_t count) {
    bool found = false;
    for (uint32_t i = 1; i < count; ++i)
        for (uint32_t j = 0; j < i; ++j) found |= row[i] == row[j];
    return found;
}

}  // namespace

QuadRings::QuadRings(const LMeshTopology& topology)
    : faces_(topology.Faces()), nquads_(topology.GetNumFaces() / 2) {
    ResizeLarge(fans_, topology.GetNumVerts());
    for (int q = 0; q < nquads_; ++q)
        VisitCorners(faces_.data(), q, [&](int v, int next, int, int previous) {
            fans_[v].open += Mixed(next) - Mixed(previous);
            ++fans_[v].nquads;
        });
    // A fan of more quads than most rings have members would be searched for doubles for long.
    constexpr uint32_t kManyQuads = 64;
    for (Fan& fan : fans_)
        if (fan.nquads > kManyQuads) fan.open = 1;
}

/// Pairs of vertex and quad, ascending. Who has fewer than three quads stays anyway.
std::vector<std::pair<int, int>> QuadRings::QuadsOfOpenVerts() const {
    std::vector<std::pair<int, int>> around;
    for (int q = 0; q < nquads_; ++q)
        VisitCorners(faces_.data(), q, [&](int v, int, int, int) {
            if (IsOpen(v) && fans_[v].nquads >= 3) around.emplace_back(v, q);
        });
    std::sort(around.begin(), around.end());
    return around;
}

LIndexRows QuadRings::Fill() {
    SizeRows();
    FillRows();
    RemoveDoubles();
    LIndexRows rows;
    rows.Adopt(std::move(starts_), std::move(entries_));
    return rows;
}

void QuadRings::SizeRows() {
    const int nverts = static_cast<int>(fans_.size());
    ResizeLarge(starts_, static_cast<size_t>(nverts) + 1);
    auto open = openRings_.begin();
    for (int v = 0; v < nverts; ++v) {
        size_t size = IsOpen(v) ? 0 : 2 * size_t{fans_[v].nquads};
        if (open != openRings_.end() && open->vert == v) size = (open++)->ring.size();
        starts_[v + 1] = starts_[v] + static_cast<uint32_t>(size);
    }
    ResizeLarge(entries_, starts_.back());
}

void QuadRings::FillRows() {
    // While they are being filled, starts_[v] is where the next entry of v goes.
    for (int q = 0; q < nquads_; ++q)
        VisitCorners(faces_.data(), q, [&](int v, int next, int across, int) {
            if (IsOpen(v)) return;
            int* entry = &entries_[starts_[v]];
            entry[0] = next;
            entry[1] = across;
            starts_[v] += 2;
        });
    for (const OpenRing& open : openRings_) {
        std::copy(open.ring.begin(), open.ring.end(), &entries_[starts_[open.vert]]);
        starts_[open.vert] += static_cast<uint32_t>(open.ring.size());
    }
    for (size_t v = fans_.size(); v > 0; --v) starts_[v] = starts_[v - 1];
    starts_[0] = 0;
}

/// Quads that share more than an edge give a vertex twice.
void QuadRings::RemoveDoubles() {
    const size_t nverts = fans_.size();
    bool any = false;
    for (size_t v = 0; v < nverts && !any; ++v)
        any = !IsOpen(static_cast<int>(v)) &&
              HasDouble(&entries_[starts_[v]], starts_[v + 1] - starts_[v]);
    if (!any) return;
    uint32_t out = 0;
    for (size_t v = 0; v < nverts; ++v) {
        const uint32_t begin = starts_[v], first = out;
        for (uint32_t i = begin; i < starts_[v + 1]; ++i) {
            const auto end = entries_.begin() + out;
            if (IsOpen(static_cast<int>(v)) ||
                std::find(entries_.begin() + first, end, entries_[i]) == end)
                entries_[out++] = entries_[i];
        }
        starts_[v] = first;
    }
    starts_[nverts] = out;
    entries_.resize(out);
}

}  // namespace VantrelSDK
