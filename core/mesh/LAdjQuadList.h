#pragma once

#include <span>

#include "core/mesh/LIndexRows.h"
#include "core/subdiv/LQuadMesh.h"

namespace VantrelSDK {

class LBlindData;
class LMeshTopology;

/// Which quads touch each vertex. Immutable; any number of threads may read it. Empty without
/// memory.
class LAdjQuadList {
  public:
    LAdjQuadList() = default;
    /// A corner out of range is left out. With `dedupe`, of several quads at a vertex that are made
    /// of the same corners in whatever order, only the lowest is listed; corners are the same when
    /// their numbers or their positions are equal.
    explicit LAdjQuadList(const LQuadMesh& mesh, bool dedupe = false);
    /// Of a level of split quads, two faces each.
    explicit LAdjQuadList(const LMeshTopology& splitQuads);

    /// The numbers of the quads around v, each once, ascending; none for a vertex out of range.
    std::span<const int> GetAdjQuadsForVert(int v) const { return rows_.Row(v); }
    int nverts() const { return rows_.NumRows(); }
    int nquads() const { return nquads_; }

    /// The table as a record. What is read must name quads that there are; after a failure the
    /// table is empty.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);

  private:
    LIndexRows rows_;
    int nquads_ = 0;
};

}  // namespace VantrelSDK
