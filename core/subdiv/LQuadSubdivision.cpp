#include "core/subdiv/LQuadSubdivision.h"

#include <algorithm>

#include "core/io/HugePages.h"
#include "core/subdiv/QuadRings.h"

namespace VantrelSDK {

long long LQuadSubdivision::NumVerts() const {
    return static_cast<long long>(level_.triMesh()->GetNumVerts()) +
           level_.triEdges().GetNumEdges() + level_.NumBaseTris();
}

std::shared_ptr<const LMeshTopology> LQuadSubdivision::MakeTopology() const {
    std::vector<LFace> faces;
    ResizeLarge(faces, static_cast<size_t>(NumFaces()));
    for (int q = 0; q < level_.NumQuads(); ++q) {
        LFace& a = faces[2 * q];
        LFace& b = faces[2 * q + 1];
        level_.GetQuad(q).Split(a, b);
        a.id = 2 * q;
        b.id = 2 * q + 1;
    }
    return LMeshTopology::OfQuads(level_.NumVerts(), std::move(faces));
}

LLevelTables LQuadSubdivision::MakeTables(const LMeshTopology& topology) const {
    LLevelTables tables;
    level_.TakeParents(tables);
    tables.rings = MakeRings(topology);
    return tables;
}

LIndexRows LQuadSubdivision::MakeRings(const LMeshTopology& topology) const {
    const auto isEdgePoint = [&](int v) {
        return level_.GetVertKind(v) == LQuadTriSubdivLevel::kEdgePoint;
    };
    QuadRings rings(topology);
    rings.GatherOpen(kMaxRing, [&](int nquads, const std::vector<int>& ring) {
        return nquads == 3 && std::count_if(ring.begin(), ring.end(), isEdgePoint) > 3;
    });
    return rings.Fill();
}

std::unique_ptr<LMesh> LQuadSubdivision::Export(std::span<const LPoint3> verts) const {
    LLevelTables tables;
    level_.TakeParents(tables);
    const LLevelRule rule(true, false, false, std::move(tables));
    const auto topology = MakeTopology();
    std::vector<LPoint3> all(topology->GetNumVerts());
    std::copy_n(verts.begin(), level_.triMesh()->GetNumVerts(), all.begin());
    rule.Interpolate(all.data(), level_.triMesh()->GetNumVerts());
    return std::make_unique<LMesh>(topology, all);
}

}  // namespace VantrelSDK
