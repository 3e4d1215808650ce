#pragma once

#include <memory>

#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/LMeshTopology.h"
#include "core/mesh/LQuad.h"
#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

/// The triangles of a level as they pair up for a step to quads.
class LQuadTriSubdivLevelBase {
  public:
    explicit LQuadTriSubdivLevelBase(std::shared_ptr<const LMeshTopology> triMesh)
        : triMesh_(std::move(triMesh)), coupling_(triMesh_->Coupling()) {}
    virtual ~LQuadTriSubdivLevelBase() = default;

    const std::shared_ptr<const LMeshTopology>& triMesh() const { return triMesh_; }
    const std::shared_ptr<const LTriCoupling>& coupling() const { return coupling_; }
    int NumQuads() const { return 4 * coupling_->NumPairs() + 3 * coupling_->NumSingles(); }
    int NumBaseQuads() const { return coupling_->NumPairs(); }
    int NumBaseTris() const { return coupling_->NumSingles(); }
    /// The two triangles of pair i, and the triangle of single i.
    std::pair<int, int> GetBaseQuad(int i) const { return coupling_->Pair(i); }
    int GetBaseTri(int i) const { return coupling_->Single(i); }

  private:
    std::shared_ptr<const LMeshTopology> triMesh_;
    std::shared_ptr<const LTriCoupling> coupling_;
};

/// One step from a triangle level to quads: the vertices of the level, then the middle of each of
/// its edges, then the centre of each single triangle; and the quads between them.
class LQuadTriSubdivLevel : public LQuadTriSubdivLevelBase {
  public:
    /// What a vertex of the step is.
    enum VertKind : uint8_t { kOldVertex = 1, kFacePoint = 2, kEdgePoint = 4 };

    /// `edges` are those of the level (borrowed), null: made here. May throw std::bad_alloc.
    LQuadTriSubdivLevel(std::shared_ptr<const LMeshTopology> triMesh,
                        const LEdgeListFlagged* edges = nullptr);

    const LEdgeListFlagged& triEdges() const { return *edges_; }
    int NumExtVerts() const { return edges_->GetNumEdges() + NumBaseTris(); }
    int NumVerts() const { return triMesh()->GetNumVerts() + NumExtVerts(); }
    /// Vertex i of the step. The middle of a gluing edge is a face point: the centre of a quad, or
    /// inside a polygon of more corners.
    VertKind GetVertKind(int i) const;
    /// q from 0 to NumQuads() - 1.
    LQuad GetQuad(int q) const;
    /// How the new vertices follow from those of the level.
    void TakeParents(LLevelTables& tables) const;

  private:
    std::unique_ptr<const LEdgeListFlagged> ownEdges_;
    const LEdgeListFlagged* edges_;
};

}  // namespace VantrelSDK
