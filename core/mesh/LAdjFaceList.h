#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/mesh/CornerView.h"
#include "core/mesh/ElementMasks.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LIndexRows.h"

namespace VantrelSDK {

class LBlindData;
class SharedFaces;

/// Which faces touch each vertex. Immutable; any number of threads may read it. Empty when there
/// are no vertices or faces, or no memory.
class LAdjFaceList {
  public:
    LAdjFaceList() = default;
    /// A corner outside 0 to nverts - 1 is left out. Takes time and memory in proportion to the
    /// faces; the faces are not kept.
    LAdjFaceList(CornerView faces, int nverts);
    LAdjFaceList(const LAdjFaceList&) = default;
    LAdjFaceList& operator=(const LAdjFaceList&) = default;
    virtual ~LAdjFaceList() = default;

    /// The numbers of the faces around vertex v, each once, ascending; none for a vertex out of
    /// range.
    std::span<const int> GetAdjFacesForVert(int v) const { return rows_.Row(v); }
    const LIndexRows& Rows() const { return rows_; }
    int nverts() const { return rows_.NumRows(); }
    int nfaces() const { return nfaces_; }
    /// The table as a record, each row with its place for six faces more. What is read must name
    /// faces that there are; after a failure the table is empty.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);
    virtual size_t MemoryUsed() const { return rows_.MemoryUsed(); }

  private:
    LIndexRows rows_;
    int nfaces_ = 0;
};

/// Also which face lies across each edge.
class LAdjFaceList2 : public LAdjFaceList {
  public:
    /// What lies across edge 0, 1 and 2 of a face.
    struct AdjFaces {
        /// The neighbour across the edge; 0 where there is none.
        int faces[3] = {0, 0, 0};
        /// 1 where there is a neighbour.
        uint8_t has[3] = {0, 0, 0};
    };

    LAdjFaceList2() = default;
    /// The neighbour across an edge is the lowest other face that holds both its ends. The masks
    /// choose, by face, who is given neighbours; every face can be one. Without memory no face has
    /// a record.
    LAdjFaceList2(std::span<const LFace> faces, int nverts, const ElementMasks& masks = {});

    /// Null for a face out of range.
    const AdjFaces* GetAdjFacesForFace(int f) const {
        return static_cast<size_t>(f) < adjFaces_.size() ? &adjFaces_[f] : nullptr;
    }
    size_t MemoryUsed() const override {
        return LAdjFaceList::MemoryUsed() + adjFaces_.capacity() * sizeof(AdjFaces);
    }

  private:
    /// Fills in what lies across the edges whose lower vertex is `a`.
    void FindNeighbours(int a, std::span<const LFace> faces, const ElementMasks& masks,
                        SharedFaces& shared);

    std::vector<AdjFaces> adjFaces_;
};

}  // namespace VantrelSDK
