#include "core/mesh/LEdgeList.h"

#include <algorithm>
#include <new>

#include "core/io/HugePages.h"
#include "core/mesh/EdgeVisits.h"
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

LEdgeList::LEdgeList(CornerView faces, int nverts, const ElementMasks& masks)
    : LEdgeList(faces, LAdjFaceList(faces, nverts), masks) {}

LEdgeList::LEdgeList(CornerView faces, const LAdjFaceList& adj, const ElementMasks& masks) {
    if (faces.size() == 0 || static_cast<size_t>(adj.nfaces()) != faces.size()) return;
    try {
        // First the edges as their lower ends meet them, then their numbers in the faces' order.
        const std::vector<int> met = EdgeOfEachCorner(faces, adj, masks);
        std::vector<int> numbers(met.size(), -1);
        ReserveLarge(edges_, faces.size() * 3 / 2);
        ResizeLarge(faces_, faces.size());
        for (size_t f = 0; f < faces.size(); ++f)
            for (int k = 0; k < 3; ++k) {
                const int edge = met[3 * f + k];
                int unshared = -1;
                int& number = edge < 0 ? unshared : numbers[edge];
                if (number < 0) {
                    number = GetNumEdges();
                    edges_.push_back({{faces[f][k], faces[f][k == 2 ? 0 : k + 1]}});
                }
                faces_[f][k] = number;
            }
        edges_.shrink_to_fit();
    } catch (const std::bad_alloc&) {
        edges_ = {};
        faces_ = {};
    }
}

/// Three entries a face: equal ones are the same edge; -1 for an edge with an end out of range,
/// which nobody shares.
std::vector<int> LEdgeList::EdgeOfEachCorner(CornerView faces, const LAdjFaceList& adj,
                                             const ElementMasks& masks) const {
    struct Met {
        int low = -1, edge = -1, maker = -1;
    };
    std::vector<Met> met(adj.nverts());
    std::vector<int> edgeOf;
    ReserveLarge(edgeOf, 3 * faces.size());
    edgeOf.resize(3 * faces.size(), -1);
    int count = 0;
    for (int low = 0; low < adj.nverts(); ++low)
        VisitEdgesFrom(low, faces, adj, [&](int high, int f, int k) {
            Met& known = met[high];
            // An edge from a vertex to itself has the vertex's lowest face as its neighbour.
            const bool earlier =
                known.low == low && known.maker != f &&
                (high != low || known.maker == adj.GetAdjFacesForVert(low).front());
            const bool reuse = earlier && masks.Pass(f);
            edgeOf[3 * static_cast<size_t>(f) + k] = reuse ? known.edge : count;
            if (known.low != low) known = {low, count, f};
            if (!reuse) ++count;
        });
    return edgeOf;
}

LEdgeVisList::LEdgeVisList(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LEdgeVisList(faces, LAdjFaceList(faces, nverts), masks) {}

LEdgeVisList::LEdgeVisList(std::span<const LFace> faces, const LAdjFaceList& adj,
                           const ElementMasks& masks)
    : LEdgeList(faces, adj, masks) {
    flags_ = FlagEdges(edges(), faces, adj, [&](const Edge& edge, SharedFaces::Pair holders) {
        if (holders.first < 0) return false;
        const LFace& face = faces[holders.first];
        return face.IsEdgeVisible(face.CornerOf(edge.v[0]));
    });
}

LEdgeOpenList::LEdgeOpenList(std::span<const LFace> faces, int nverts, const ElementMasks& masks)
    : LEdgeOpenList(faces, LAdjFaceList(faces, nverts), masks) {}

LEdgeOpenList::LEdgeOpenList(std::span<const LFace> faces, const LAdjFaceList& adj,
                             const ElementMasks& masks)
    : LEdgeList(faces, adj, masks) {
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
