#include "core/mesh/LEdgeList.h"

#include <algorithm>
#include <new>

#include "core/mesh/LIndexRows.h"
#include "core/mesh/SharedFaces.h"

namespace VantrelSDK {

namespace {

/// A byte per edge: flag(edge, the two lowest faces that hold both ends).
template <class Flag>
std::vector<uint8_t> FlagEdges(const std::vector<LEdgeList::Edge>& edges,
                               std::span<const LFace> faces, const LAdjFaceList& adj, Flag&& flag) {
    try {
        std::vector<uint8_t> flags(edges.size(), flag(LEdgeList::Edge(), SharedFaces::Pair()));
        LIndexRows byLowerEnd;
        byLowerEnd.Build(adj.nverts(), [&](auto&& emit) {
            for (size_t e = 0; e < edges.size(); ++e) {
                const auto ends = std::minmax({edges[e].v[0], edges[e].v[1]});
                if (ends.first >= 0 && ends.second < adj.nverts())
                    emit(ends.first, static_cast<int>(e));
            }
        });
        SharedFaces shared(faces, adj);
        for (int v = 0; v < byLowerEnd.NumRows(); ++v) {
            if (byLowerEnd.Row(v).empty()) continue;
            shared.Load(v);
            for (const int e : byLowerEnd.Row(v))
                flags[e] = flag(edges[e], shared.Get(std::max(edges[e].v[0], edges[e].v[1])));
        }
        return flags;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

LEdgeList::LEdgeList(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LEdgeList(faces, LAdjFaceList2(faces, nverts, masks)) {}

LEdgeList::LEdgeList(std::span<const LFace> faces, const LAdjFaceList2& adj) {
    const int nfaces = static_cast<int>(faces.size());
    if (nfaces == 0 || adj.nfaces() != nfaces || !adj.GetAdjFacesForFace(0)) return;
    const auto earlier = [&](int f, int k) {
        const LAdjFaceList2::AdjFaces& across = *adj.GetAdjFacesForFace(f);
        return across.has[k] && across.faces[k] < f ? across.faces[k] : -1;
    };
    try {
        size_t reused = 0;
        for (int f = 0; f < nfaces; ++f)
            for (int k = 0; k < 3; ++k) reused += earlier(f, k) >= 0;
        edges_.reserve(3 * faces.size() - reused);
        faces_.reserve(faces.size());
        for (int f = 0; f < nfaces; ++f) {
            Face own;
            for (int k = 0; k < 3; ++k) {
                const int a = faces[f].v[k], b = faces[f].v[(k + 1) % 3], other = earlier(f, k);
                own[k] = other < 0 ? -1 : FindEdge(other, a, b);
                if (own[k] >= 0) continue;
                own[k] = GetNumEdges();
                edges_.push_back({{a, b}});
            }
            faces_.push_back(own);
        }
    } catch (const std::bad_alloc&) {
        edges_ = {};
        faces_ = {};
    }
}

int LEdgeList::FindEdge(int neighbour, int a, int b) const {
    for (const int e : faces_[neighbour]) {
        const int* v = edges_[e].v;
        if ((v[0] == a && v[1] == b) || (v[0] == b && v[1] == a)) return e;
    }
    return -1;
}

LEdgeVisList::LEdgeVisList(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LEdgeVisList(faces, LAdjFaceList2(faces, nverts, masks)) {}

LEdgeVisList::LEdgeVisList(std::span<const LFace> faces, const LAdjFaceList2& adj)
    : LEdgeList(faces, adj) {
    flags_ = FlagEdges(edges(), faces, adj, [&](const Edge& edge, SharedFaces::Pair holders) {
        if (holders.first < 0) return false;
        const LFace& face = faces[holders.first];
        return face.IsEdgeVisible(face.CornerOf(edge.v[0]));
    });
}

LEdgeOpenList::LEdgeOpenList(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LEdgeOpenList(faces, LAdjFaceList2(faces, nverts, masks)) {}

LEdgeOpenList::LEdgeOpenList(std::span<const LFace> faces, const LAdjFaceList2& adj)
    : LEdgeList(faces, adj) {
    flags_ = FlagEdges(edges(), faces, adj,
                       [](const Edge&, SharedFaces::Pair holders) { return holders.second < 0; });
}

LVertOpenList::LVertOpenList(int nverts, const LEdgeOpenList& edges) {
    try {
        flags_.resize(std::max(nverts, 0));
    } catch (const std::bad_alloc&) {
        return;
    }
    for (int e = 0; e < edges.GetNumEdges(); ++e) {
        if (!edges.IsEdgeOpen(e)) continue;
        for (const int v : edges.edges()[e].v)
            if (static_cast<size_t>(v) < flags_.size()) flags_[v] = 1;
    }
}

}  // namespace VantrelSDK
