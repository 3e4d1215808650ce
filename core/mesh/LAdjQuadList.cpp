#include "core/mesh/LAdjQuadList.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <new>
#include <numeric>
#include <tuple>
#include <vector>

namespace VantrelSDK {

namespace {

/// Numbers from 0 to n - 1, sorted by `key` and, where it is equal, ascending; then for each number
/// the lowest one with an equal key.
template <class Key>
std::vector<int> LowestEqual(int n, Key&& key) {
    std::vector<int> order(n), lowest(n);
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        const auto ka = key(a), kb = key(b);
        return ka < kb || (!(kb < ka) && a < b);
    });
    for (int i = 0; i < n; ++i) {
        const bool same = i > 0 && !(key(order[i - 1]) < key(order[i]));
        lowest[order[i]] = same ? lowest[order[i - 1]] : order[i];
    }
    return lowest;
}

/// The lowest vertex at the same position. A position that isn't a number equals none, so that such
/// a vertex is told apart by its own number.
std::vector<int> LowestAtSamePosition(const std::vector<LPoint3>& verts) {
    return LowestEqual(static_cast<int>(verts.size()), [&](int v) {
        const LPoint3& p = verts[v];
        const bool none = std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z);
        return none ? std::tuple(v, 0.0f, 0.0f, 0.0f) : std::tuple(-1, p.x, p.y, p.z);
    });
}

/// For each quad the lowest one with the same set of corners.
std::vector<int> LowestSameQuad(const LQuadMesh& mesh) {
    const std::vector<int> place = LowestAtSamePosition(mesh.verts());
    return LowestEqual(mesh.GetNumQuads(), [&](int q) {
        std::array<int, 4> corners;
        for (int k = 0; k < 4; ++k) {
            const int v = mesh.GetQuad(q).v[k];
            corners[k] = static_cast<size_t>(v) < place.size() ? place[v] : v;
        }
        std::sort(corners.begin(), corners.end());
        std::fill(std::unique(corners.begin(), corners.end()), corners.end(), corners.back());
        return corners;
    });
}

/// The rows of `all` without the quads that are the same as one before them in the row.
LIndexRows WithoutDoubles(const LIndexRows& all, const std::vector<int>& same) {
    std::vector<uint32_t> marks(same.size());
    uint32_t mark = 0;
    LIndexRows rows;
    rows.Build(all.NumRows(), [&](auto&& emit) {
        for (int v = 0; v < all.NumRows(); ++v) {
            ++mark;
            for (const int q : all.Row(v)) {
                if (marks[same[q]] == mark) continue;
                marks[same[q]] = mark;
                emit(v, q);
            }
        }
    });
    return rows;
}

}  // namespace

LAdjQuadList::LAdjQuadList(const LQuadMesh& mesh, bool dedupe) {
    const int nverts = mesh.GetNumVerts(), nquads = mesh.GetNumQuads();
    if (nquads == 0) return;
    const auto visitCorners = [&](auto&& emit) {
        for (int q = 0; q < nquads; ++q) {
            const int* v = mesh.GetQuad(q).v;
            for (int k = 0; k < 4; ++k)
                if (std::find(v, v + k, v[k]) == v + k && v[k] >= 0 && v[k] < nverts) emit(v[k], q);
        }
    };
    try {
        if (!rows_.Build(nverts, visitCorners)) return;
        if (dedupe) rows_ = WithoutDoubles(rows_, LowestSameQuad(mesh));
        nquads_ = nquads;
    } catch (const std::bad_alloc&) {
        rows_ = {};
    }
}

}  // namespace VantrelSDK
