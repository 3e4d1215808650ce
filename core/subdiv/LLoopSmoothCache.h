#pragma once

#include <array>
#include <span>

#include "core/math/LPoint3.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/LEdgeList.h"

namespace VantrelSDK {

/// The averaging step of Loop subdivision: with the edges of a mesh split at their middles before,
/// one step over all vertices, old and new, gives Loop's vertex and edge masks (J. Warren, H.
/// Weimer: Subdivision Methods for Geometric Design, 2001; C. Loop: Smooth Subdivision Surfaces
/// Based on Triangles, 1987). Reads the unsmoothed positions each time, so that no vertex sees
/// another one moved. Any number of threads may read it.
class LLoopSmoothCache {
  public:
    /// All are borrowed and must outlive this: `nverts` positions, the neighbours of those vertices
    /// (a table of another number of vertices counts as none) and, or null, which of them are open.
    LLoopSmoothCache(const LPoint3* verts, int nverts, const LAdjVertList& adj,
                     const LVertOpenList* open);

    int GetNumVerts() const { return nverts_; }
    /// The smoothed position of vertex i. An open vertex, or one without neighbours, keeps its own.
    /// The zero point out of range.
    LPoint3 GetVert(int i) const;
    /// Writes GetNumVerts() smoothed positions. `out` must not overlap the positions that are read.
    void Fill(LPoint3* out) const;

    /// What the vertex itself weighs against a weight of 1 for each of its n neighbours, n above 0.
    static float VertexWeight(int n);

  private:
    const LPoint3* verts_;
    int nverts_;
    const LAdjVertList* adj_;
    const LVertOpenList* open_;
    /// VertexWeight by number of neighbours, for all that ordinary meshes have.
    std::array<float, 33> weights_;
};

}  // namespace VantrelSDK
