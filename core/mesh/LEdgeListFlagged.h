#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "core/mesh/ElementMasks.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

class LBlindData;

/// The edges of a mesh with their faces and flags, for the building of levels. Edges are ordered by
/// their lower vertex and, there, by the faces that made them. Two faces share an edge at most: a
/// third one on the same two vertices opens a second edge. Immutable; any number of threads may
/// read it. Empty without vertices, faces or memory.
class LEdgeListFlagged {
  public:
    static constexpr uint8_t kVisible = 1 << 0, kGluing = 1 << 1, kHasSecondFace = 1 << 3;

    /// 24 bytes, also in a stream.
    struct Edge {
        /// The ends in the order of the first face.
        int32_t v[2] = {-1, -1};
        /// The second is -1 where there is none.
        int32_t faces[2] = {-1, -1};
        /// The edge's own number.
        int32_t index = -1;
        /// What either face says, by the constants above.
        uint8_t flags = 0;
        uint8_t padding[3] = {0, 0, 0};
    };
    /// The edges of a face by its edge order: the first edge with those two ends, whichever faces
    /// it joins; -1 where there is none.
    using Face = std::array<int, 3>;

    LEdgeListFlagged() = default;
    /// The masks choose, by face, who adds edges; all faces look theirs up. An edge with an end
    /// outside 0 to nverts - 1 is left out.
    LEdgeListFlagged(std::span<const LFace> faces, int nverts, const ElementMasks& masks = {});

    int GetNumEdges() const { return static_cast<int>(edges_.size()); }
    /// An edge of only -1 for one out of range.
    Edge GetEdge(int e) const {
        return static_cast<size_t>(e) < edges_.size() ? edges_[e] : Edge();
    }
    /// Three times -1 for a face out of range.
    Face GetFace(int f) const {
        return static_cast<size_t>(f) < faces_.size() ? faces_[f] : Face{-1, -1, -1};
    }
    const std::vector<Edge>& edges() const { return edges_; }
    const std::vector<Face>& faces() const { return faces_; }

    /// The list as a record. What is read must name edges that there are, and no vertices or faces
    /// below -1; after a failure the list is empty.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);

  private:
    /// Edge k of face number f makes edge e or becomes its second.
    void Add(int e, const LFace& face, int f, int k);

    std::vector<Edge> edges_;
    std::vector<Face> faces_;
};

static_assert(sizeof(LEdgeListFlagged::Edge) == 24);

}  // namespace VantrelSDK
