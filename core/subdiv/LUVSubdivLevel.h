#pragma once

#include <span>
#include <vector>

#include "core/mesh/LEdgeList.h"
#include "core/mesh/LQuad.h"
#include "core/mesh/LTriCoupling.h"
#include "core/subdiv/LUVChannel.h"

namespace VantrelSDK {

/// One step of a UV channel: the points of a level, then the middle of each of its edges; a step to
/// quads has the centre of each single triangle behind those. Borrows the level.
class LUVSubdivLevel {
  public:
    /// `verts` are the points of the level. May throw std::bad_alloc.
    LUVSubdivLevel(std::span<const LPoint2> verts, std::span<const LUVChannel::MFace> faces);
    virtual ~LUVSubdivLevel() = default;

    const LEdgeList& uvEdges() const { return edges_; }
    virtual int NumExtVerts() const { return edges_.GetNumEdges(); }
    int NumVerts() const { return static_cast<int>(verts_.size()) + NumExtVerts(); }
    /// Point i of the step; false, and (0, 0), for one that can't be made.
    virtual bool GetVert(int i, LPoint2& uv) const;
    /// Child i: k = i % 4 of face i / 4, in the order of the geometry's triangle step.
    LUVChannel::MFace GetExtFace(int i) const;

  protected:
    int Corner(int f, int k) const { return faces_[f].v[k]; }
    int Middle(int f, int k) const {
        return static_cast<int>(verts_.size()) + edges_.faces()[f][k];
    }

    std::span<const LPoint2> verts_;
    std::span<const LUVChannel::MFace> faces_;
    LEdgeList edges_;
};

/// A step to quads, by the geometry's pairs.
class LQuadTriUVSubdivLevel : public LUVSubdivLevel {
  public:
    /// `coupling` is that of the geometry's level, borrowed.
    LQuadTriUVSubdivLevel(std::span<const LPoint2> verts, std::span<const LUVChannel::MFace> faces,
                          const LTriCoupling& coupling)
        : LUVSubdivLevel(verts, faces), coupling_(coupling) {}

    int NumQuads() const { return 4 * coupling_.NumPairs() + 3 * coupling_.NumSingles(); }
    int NumExtVerts() const override { return edges_.GetNumEdges() + coupling_.NumSingles(); }
    bool GetVert(int i, LPoint2& uv) const override;
    /// q from 0 to NumQuads() - 1; a corner without a point is -1. Which edges are visible is the
    /// geometry's to say.
    LQuad GetQuad(int q) const;

  private:
    const LTriCoupling& coupling_;
};

}  // namespace VantrelSDK
