#include "core/subdiv/LQuadTriSubdivLevel.h"

#include <new>

#include "core/io/HugePages.h"

#include "core/subdiv/QuadPattern.h"

namespace VantrelSDK {

namespace {

/// The numbers of a geometry level.
struct MeshAt {
    const LFace* faces;
    const LEdgeListFlagged::Face* edges;
    int nverts;

    int Corner(int f, int k) const { return faces[f].v[k]; }
    int Middle(int f, int k) const { return nverts + edges[f][k]; }
    bool Visible(int f, int k) const { return faces[f].IsEdgeVisible(k); }
};

}  // namespace

LQuadTriSubdivLevel::LQuadTriSubdivLevel(std::shared_ptr<const LMeshTopology> triMesh,
                                         const LEdgeListFlagged* edges)
    : LQuadTriSubdivLevelBase(std::move(triMesh)), edges_(edges) {
    if (edges_) return;
    const LMeshTopology& topology = *this->triMesh();
    ownEdges_ = std::make_unique<LEdgeListFlagged>(topology.Faces(), topology.GetNumVerts());
    edges_ = ownEdges_.get();
}

LQuadTriSubdivLevel::VertKind LQuadTriSubdivLevel::GetVertKind(int i) const {
    const int edge = i - triMesh()->GetNumVerts();
    if (edge < 0) return kOldVertex;
    if (edge >= edges_->GetNumEdges()) return kFacePoint;
    const bool gluing = edges_->edges()[edge].flags & LEdgeListFlagged::kGluing;
    return gluing ? kFacePoint : kEdgePoint;
}

LQuad LQuadTriSubdivLevel::GetQuad(int q) const {
    const LMeshTopology& topology = *triMesh();
    return StepQuad(
        q, *coupling(), topology.GetNumVerts() + edges_->GetNumEdges(),
        MeshAt{topology.Faces().data(), edges_->faces().data(), topology.GetNumVerts()});
}

void LQuadTriSubdivLevel::TakeParents(LLevelTables& tables) const {
    ReserveLarge(tables.parents, edges_->GetNumEdges());
    for (const LEdgeListFlagged::Edge& edge : edges_->edges())
        tables.parents.emplace_back(edge.v[0], edge.v[1]);
    tables.centres.reserve(NumBaseTris());
    for (int i = 0; i < NumBaseTris(); ++i) {
        const int* v = triMesh()->Faces()[GetBaseTri(i)].v;
        tables.centres.push_back({v[0], v[1], v[2]});
    }
}

}  // namespace VantrelSDK
