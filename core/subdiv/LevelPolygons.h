#pragma once

#include <span>
#include <vector>

#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

/// The polygons of a level above 0, in order of the base polygons that they lie in: quads of a quad
/// level, else triangles. A corner is told as 3 * face + corner of the level's triangles, so that
/// vertices and the points of any UV channel are looked up alike.
class LevelPolygons {
  public:
    /// `firstFaces`: for each base polygon its first face at level 0, and behind them the number of
    /// faces.
    LevelPolygons(const LSubdivMesh& geom, int level, std::span<const int> firstFaces);

    int count() const { return static_cast<int>(starts.size()) - 1; }

    /// count() + 1 places in `corners`.
    std::vector<int> starts{0};
    std::vector<int> corners;
    /// For each base polygon its first polygon here, and behind them count().
    std::vector<int> firstOf;

  private:
    void Add(int face, int from, int to);
};

}  // namespace VantrelSDK
