#include "core/subdiv/LQuadSubdivision.h"

#include <algorithm>
#include <array>
#include <climits>
#include <new>

namespace VantrelSDK {

namespace {

/// The corners of quad q of a level of split quads.
std::array<int, 4> CornersOf(const std::vector<LFace>& faces, int q) {
    const int *a = faces[2 * q].v, *b = faces[2 * q + 1].v;
    return {a[0], a[1], a[2], b[1]};
}

/// The quads around each vertex, each once, ascending.
LIndexRows QuadsAround(const std::vector<LFace>& faces, int nverts) {
    LIndexRows rows;
    const int nquads = static_cast<int>(faces.size() / 2);
    const bool built = rows.Build(nverts, [&](auto&& emit) {
        for (int q = 0; q < nquads; ++q) {
            const auto c = CornersOf(faces, q);
            emit(c[0], q);
            if (c[1] != c[0]) emit(c[1], q);
            if (c[2] != c[0] && c[2] != c[1]) emit(c[2], q);
            if (c[3] != c[0] && c[3] != c[1] && c[3] != c[2]) emit(c[3], q);
        }
    });
    if (!built) throw std::bad_alloc();
    return rows;
}

}  // namespace

long long LQuadSubdivision::NumVerts() const {
    return static_cast<long long>(level_.triMesh()->GetNumVerts()) +
           level_.triEdges().GetNumEdges() + level_.NumBaseTris();
}

std::shared_ptr<const LMeshTopology> LQuadSubdivision::MakeTopology() const {
    std::vector<LFace> faces(static_cast<size_t>(NumFaces()));
    for (int q = 0; q < level_.NumQuads(); ++q) {
        LFace& a = faces[2 * q];
        LFace& b = faces[2 * q + 1];
        level_.GetQuad(q).Split(a, b);
        a.id = 2 * q;
        b.id = 2 * q + 1;
    }
    return LMeshTopology::OfQuads(level_.NumVerts(), std::move(faces));
}

std::shared_ptr<const LLevelRule> LQuadSubdivision::MakeRule(const LMeshTopology& topology,
                                                             bool smooth, bool protectopen) const {
    auto rule = std::make_shared<LLevelRule>();
    rule->isQuad = true;
    rule->smooth = smooth;
    rule->protectOpen = protectopen;
    level_.TakeParents(*rule);
    rule->rings = MakeRings(topology);
    return rule;
}

LIndexRows LQuadSubdivision::MakeRings(const LMeshTopology& topology) const {
    const std::vector<LFace>& faces = topology.Faces();
    const int nverts = topology.GetNumVerts();
    const LIndexRows quads = QuadsAround(faces, nverts);
    std::vector<uint32_t> starts(static_cast<size_t>(nverts) + 1);
    std::vector<int> rings;
    rings.reserve(2 * faces.size() + faces.size() / 8);
    std::vector<int> seenBy(nverts, -1);
    for (int v = 0; v < nverts; ++v) {
        const size_t start = rings.size();
        const std::span<const int> around = quads.Row(v);
        seenBy[v] = v;
        for (size_t i = 0; around.size() >= 3 && i < around.size(); ++i)
            for (const int other : CornersOf(faces, around[i]))
                if (seenBy[other] != v && rings.size() - start < kMaxRing) {
                    seenBy[other] = v;
                    rings.push_back(other);
                }
        if (around.size() == 3) {
            const auto edgePoints = std::count_if(rings.begin() + start, rings.end(), [&](int o) {
                return level_.GetVertKind(o) == LQuadTriSubdivLevel::kEdgePoint;
            });
            if (edgePoints > 3) rings.resize(start);
        }
        starts[v + 1] = static_cast<uint32_t>(rings.size());
    }
    rings.shrink_to_fit();
    LIndexRows rows;
    rows.Adopt(std::move(starts), std::move(rings));
    return rows;
}

std::unique_ptr<LMesh> LQuadSubdivision::Export(std::span<const LPoint3> verts) const {
    LLevelRule rule;
    level_.TakeParents(rule);
    const auto topology = MakeTopology();
    std::vector<LPoint3> all(topology->GetNumVerts());
    std::copy_n(verts.begin(), level_.triMesh()->GetNumVerts(), all.begin());
    rule.Interpolate(all.data(), level_.triMesh()->GetNumVerts());
    return std::make_unique<LMesh>(topology, all);
}

}  // namespace VantrelSDK
