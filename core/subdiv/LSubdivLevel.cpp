#include "core/subdiv/LSubdivLevel.h"

#include <algorithm>

namespace VantrelSDK {

LSubdivLevelTopo::LSubdivLevelTopo(std::span<const LFace> faces, int nverts, int startf, int endf,
                                   const ElementMasks& masks)
    : faces_(faces), nverts_(nverts), edges_(faces, nverts, masks) {
    endf = std::min(endf, static_cast<int>(faces.size()) - 1);
    for (int f = std::max(startf, 0); f <= endf; ++f)
        if (masks.Pass(f)) fids_.push_back(f);
}

LFace LSubdivLevelTopo::GetExtFace(int i) const {
    const int f = fids_[i / 4], k = i % 4;
    const LFace& parent = faces_[f];
    const auto& edge = edges_.GetFace(f);
    LFace face;
    face.id = i + static_cast<int>(faces_.size());
    face.flags = 0;
    if (k == 3) {
        for (int e = 0; e < 3; ++e) face.v[e] = edge[e] + nverts_;
        return face;
    }
    const int before = (k + 2) % 3;
    face.v[0] = parent.v[k];
    face.v[1] = edge[k] + nverts_;
    face.v[2] = edge[before] + nverts_;
    if (parent.IsEdgeVisible(k)) face.flags |= 1;
    if (parent.IsEdgeVisible(before)) face.flags |= 4;
    return face;
}

LLevelTables LSubdivLevelTopo::MakeTables(const LMeshTopology& topology, bool protectopen) const {
    LLevelTables tables;
    tables.parents.resize(GetNumExtVerts());
    for (int e = 0; e < GetNumExtVerts(); ++e) {
        const auto [a, b] = edges_.GetEdge(e).v;
        const bool known = a >= 0 && b >= 0 && a < nverts_ && b < nverts_;
        tables.parents[e] = known ? std::pair(a, b) : std::pair(-1, -1);
    }
    if (protectopen)
        tables.open = LVertOpenList(topology.GetNumVerts(),
                                    LEdgeOpenList(topology.Faces(), topology.GetNumVerts()));
    return tables;
}

}  // namespace VantrelSDK
