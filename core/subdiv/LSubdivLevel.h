#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/math/LColor.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LEdgeList.h"
#include "core/mesh/LMesh.h"
#include "core/subdiv/LLevelRule.h"

namespace VantrelSDK {

/// The topology half of one triangle step over some faces of a level: its edges and the four faces
/// that each face becomes.
class LSubdivLevelTopo {
  public:
    /// Faces startf to endf of `faces` (over nverts vertices) are split. The masks choose, by face.
    LSubdivLevelTopo(std::span<const LFace> faces, int nverts, int startf, int endf,
                     const ElementMasks& masks = {});

    const LEdgeList& edges() const { return edges_; }
    int GetNumExtFaces() const { return static_cast<int>(fids_.size()) * 4; }
    int GetNumExtVerts() const { return edges_.GetNumEdges(); }
    /// Sub-face i: k = i % 4 of the included face i / 4. A corner is a vertex of the level or,
    /// counted from nverts, the midpoint of an edge; id = i + faces of the level.
    LFace GetExtFace(int i) const;
    /// How the vertices of the new level, whose topology is `topology`, follow. May throw
    /// std::bad_alloc.
    LLevelTables MakeTables(const LMeshTopology& topology, bool protectopen) const;

  private:
    std::span<const LFace> faces_;
    int nverts_;
    LEdgeList edges_;
    std::vector<int> fids_;
};

/// The value half of one triangle step: a value per vertex, a new one in the middle of each edge.
template <class T>
class LSubdivLevelValues {
  public:
    /// All three are borrowed; an edge that ends at or past `count` has the zero value.
    LSubdivLevelValues(const LEdgeList* edges, const T* values, int count)
        : edges_(edges), values_(values), count_(count) {}

    int GetNumExtVerts() const { return edges_->GetNumEdges(); }
    T GetExtVert(int i) const {
        const auto [a, b] = edges_->GetEdge(i).v;
        if (a < 0 || b < 0 || a >= count_ || b >= count_) return T{};
        return (values_[a] + values_[b]) * 0.5f;
    }

  private:
    const LEdgeList* edges_;
    const T* values_;
    int count_;
};

using LSubdivLevelGeom = LSubdivLevelValues<LPoint3>;
using LSubdivLevelColor = LSubdivLevelValues<LColor>;
using LSubdivLevelAColor = LSubdivLevelValues<LAColor>;
using LSubdivLevelFloatVert = LSubdivLevelValues<float>;

}  // namespace VantrelSDK
