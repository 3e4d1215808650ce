#pragma once

#include <span>

#include "core/mesh/ElementMasks.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LIndexRows.h"

namespace VantrelSDK {

/// The neighbours of each vertex: the other corners of its faces. Immutable; any number of threads
/// may read it. Empty without memory.
class LAdjVertList {
  public:
    LAdjVertList() = default;
    /// `adj` must be the table of `faces`; neither is kept. The masks choose vertices: one whose
    /// `exclude` byte is 1 (no other value), or whose `include` byte is 0, gets no neighbours.
    LAdjVertList(const LAdjFaceList& adj, std::span<const LFace> faces,
                 const ElementMasks& masks = {});

    /// Each neighbour once, in the order in which the faces around v, ascending, name them. None
    /// for a vertex out of range, without faces or left out by a mask.
    std::span<const int> GetAdjVertsForVert(int v) const { return rows_.Row(v); }
    const LIndexRows& Rows() const { return rows_; }
    int nverts() const { return rows_.NumRows(); }
    size_t MemoryUsed() const { return rows_.MemoryUsed(); }

  private:
    LIndexRows rows_;
};

}  // namespace VantrelSDK
