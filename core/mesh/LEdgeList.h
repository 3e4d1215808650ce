#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "core/mesh/ElementMasks.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// The edges of a mesh, numbered as they first appear going through the faces, and the edges of
/// each face. Immutable; any number of threads may read it. Empty without vertices, faces or
/// memory.
class LEdgeList {
  public:
    /// The two ends, in the order of the face that made the edge. An end out of range is kept as
    /// the face has it.
    struct Edge {
        int v[2] = {-1, -1};
    };
    /// The edges of a face, by the face's edge order.
    using Face = std::array<int, 3>;

    LEdgeList() = default;
    /// A face reuses the edge that an earlier face made between the same two vertices. The masks
    /// choose, by face, who may reuse; a face that may not makes edges of its own.
    LEdgeList(CornerView faces, int nverts, const ElementMasks& masks = {});
    /// The same with adjacency that is at hand: `adj` must be the table of `faces`.
    LEdgeList(CornerView faces, const LAdjFaceList& adj, const ElementMasks& masks = {});
    virtual ~LEdgeList() = default;

    int GetNumEdges() const { return static_cast<int>(edges_.size()); }
    /// (-1, -1) for an edge out of range.
    Edge GetEdge(int e) const {
        return static_cast<size_t>(e) < edges_.size() ? edges_[e] : Edge();
    }
    /// Three times -1 for a face out of range.
    Face GetFace(int f) const {
        return static_cast<size_t>(f) < faces_.size() ? faces_[f] : Face{-1, -1, -1};
    }
    const std::vector<Edge>& edges() const { return edges_; }
    const std::vector<Face>& faces() const { return faces_; }

  private:
    std::vector<int> EdgeOfEachCorner(CornerView faces, const LAdjFaceList& adj,
                                      const ElementMasks& masks) const;

    std::vector<Edge> edges_;
    std::vector<Face> faces_;
};

/// Also whether each edge is visible.
class LEdgeVisList : public LEdgeList {
  public:
    LEdgeVisList() = default;
    LEdgeVisList(std::span<const LFace> faces, int nverts, const ElementMasks& masks = {});
    LEdgeVisList(std::span<const LFace> faces, const LAdjFaceList& adj,
                 const ElementMasks& masks = {});

    /// What the lowest face that holds both ends says about its edge that starts at the edge's
    /// first end. False for an edge without such a face or out of range.
    bool IsEdgeVisible(int e) const {
        return static_cast<size_t>(e) < flags_.size() && flags_[e] != 0;
    }
    /// A byte per edge, 1 or 0.
    const std::vector<uint8_t>& flags() const { return flags_; }

  private:
    std::vector<uint8_t> flags_;
};

/// Also whether each edge is open: fewer than two faces hold both its ends.
class LEdgeOpenList : public LEdgeList {
  public:
    LEdgeOpenList() = default;
    LEdgeOpenList(std::span<const LFace> faces, int nverts, const ElementMasks& masks = {});
    LEdgeOpenList(std::span<const LFace> faces, const LAdjFaceList& adj,
                  const ElementMasks& masks = {});

    /// False for an edge out of range.
    bool IsEdgeOpen(int e) const {
        return static_cast<size_t>(e) < flags_.size() && flags_[e] != 0;
    }
    /// A byte per edge, 1 or 0.
    const std::vector<uint8_t>& flags() const { return flags_; }

  private:
    std::vector<uint8_t> flags_;
};

/// Which vertices lie on an open edge.
class LVertOpenList {
  public:
    LVertOpenList() = default;
    /// `nverts` is the number of vertices; ends of edges beyond it are passed over.
    LVertOpenList(int nverts, const LEdgeOpenList& edges);

    /// False for a vertex out of range.
    bool IsVertOpen(int v) const {
        return static_cast<size_t>(v) < flags_.size() && flags_[v] != 0;
    }
    /// A byte per vertex, 1 or 0.
    const std::vector<uint8_t>& flags() const { return flags_; }

  private:
    std::vector<uint8_t> flags_;
};

}  // namespace VantrelSDK
