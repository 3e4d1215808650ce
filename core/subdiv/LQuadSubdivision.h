#pragma once

#include <memory>
#include <span>

#include "core/mesh/LMesh.h"
#include "core/subdiv/LQuadTriSubdivLevel.h"

namespace VantrelSDK {

/// One step to quads, as what a mesh needs to gain the level: the topology of the new level, and
/// the rule by which its vertices follow.
///
/// A vertex of the step moves to the mean of itself and its ring, all other vertices of the quads
/// around it, each with weight 1: neither Catmull and Clark's weights nor Loop's, but a plain mean.
/// A vertex with fewer than three quads stays, and so does one with three that has more than three
/// edge points in its ring, which lies on an open border.
class LQuadSubdivision {
  public:
    /// Rings end at so many vertices.
    static constexpr int kMaxRing = 6000;

    /// `edges`, borrowed, may be null. May throw std::bad_alloc.
    LQuadSubdivision(std::shared_ptr<const LMeshTopology> triMesh,
                     const LEdgeListFlagged* edges = nullptr)
        : level_(std::move(triMesh), edges) {}

    const LQuadTriSubdivLevel& level() const { return level_; }
    /// Vertices, of the level that is cut and new ones, and faces of the step, which may be beyond
    /// what an int holds.
    long long NumVerts() const;
    long long NumFaces() const { return 2LL * level_.NumQuads(); }

    /// Two triangles a quad, in order of the quads. May throw std::bad_alloc, like all that follow.
    std::shared_ptr<const LMeshTopology> MakeTopology() const;
    /// `topology` is that of MakeTopology.
    LLevelTables MakeTables(const LMeshTopology& topology) const;
    /// The quads as a triangle mesh of their own, not smoothed. `verts` are those of the level.
    std::unique_ptr<LMesh> Export(std::span<const LPoint3> verts) const;

  private:
    LIndexRows MakeRings(const LMeshTopology& topology) const;

    LQuadTriSubdivLevel level_;
};

}  // namespace VantrelSDK
