#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "core/mesh/LAdjFaceList.h"

namespace VantrelSDK {

/// Answers which faces two vertices have in common, for all the vertices around one at a time.
///
/// Loading a vertex costs a visit to each of its faces and a question nothing, so that going
/// through all edges by their lower vertex stays linear even when a million faces share a vertex or
/// an edge, where comparing the two ends' lists would not. May throw std::bad_alloc when made.
class SharedFaces {
  public:
    /// The two lowest faces, -1 for none.
    struct Pair {
        int first = -1, second = -1;

        /// The lowest face other than f, or -1.
        int Other(int f) const { return first == f ? second : first; }
    };

    /// Both are borrowed; `adj` is the table of these faces.
    SharedFaces(std::span<const LFace> faces, const LAdjFaceList& adj)
        : faces_(faces), adj_(adj), met_(adj.nverts()) {}

    /// Makes `vert` the vertex that Get asks about.
    void Load(int vert) {
        vert_ = vert;
        for (const int f : adj_.GetAdjFacesForVert(vert))
            for (const int other : faces_[f].v)
                if (static_cast<unsigned>(other) < met_.size()) Meet(met_[other], f);
    }

    /// The faces that hold both the loaded vertex and `other`, which is within range.
    Pair Get(int other) const { return met_[other].vert == vert_ ? met_[other].faces : Pair(); }

  private:
    struct Met {
        int vert = -1;
        Pair faces;
    };

    void Meet(Met& met, int f) const {
        if (met.vert != vert_)
            met = {vert_, {f, -1}};
        else if (met.faces.second < 0 && met.faces.first != f)
            met.faces.second = f;
    }

    std::span<const LFace> faces_;
    const LAdjFaceList& adj_;
    std::vector<Met> met_;
    int vert_ = -1;
};

}  // namespace VantrelSDK
