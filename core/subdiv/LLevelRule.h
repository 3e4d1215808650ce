#pragma once

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LEdgeList.h"
#include "core/mesh/LIndexRows.h"
#include "core/mesh/LMeshTopology.h"

namespace VantrelSDK {

class LThreadGroup;

/// How the vertices of a level come from those below: what it takes to fill them anew from other
/// positions, without any look at edges or pairs. Immutable once the level exists, shared by all
/// meshes that have the level. Vertices of the levels below come first, then one per edge, then one
/// per single triangle of a quad level.
struct LLevelRule {
    /// New vertex i is the middle of vertices parents[i].first and second; of an edge with an end
    /// out of range, (-1, -1), the zero point.
    std::vector<std::pair<int, int>> parents;
    /// The vertices behind those are the centres of these three.
    std::vector<std::array<int, 3>> centres;
    /// The level was smoothed after the split.
    bool smooth = false;
    bool protectOpen = false;
    /// Of a triangle level: the vertices that stay, empty for none.
    LVertOpenList open;
    /// Of a quad level, by vertex: the others whose mean with it is its smooth position; none for
    /// one that stays.
    LIndexRows rings;
    bool isQuad = false;

    int NumNewVerts() const { return static_cast<int>(parents.size() + centres.size()); }

    /// Fills values[first] and up, one for each new vertex, from the values before them.
    template <class T>
    void Interpolate(T* values, int first) const {
        InterpolateSome(values, first, 0, NumNewVerts());
    }
    /// Of these, numbers `from` to `to` - 1 of the new vertices.
    template <class T>
    void InterpolateSome(T* values, int first, int from, int to) const;

    /// Fills the level's vertices: `verts` has topology.GetNumVerts() entries, those of the levels
    /// below already right. With `smooth` all of them, old ones too, go to their smooth positions.
    /// `scratch` is working memory, kept between calls. `workers` may be null; the bits don't
    /// depend on their number.
    void Fill(const LMeshTopology& topology, LPoint3* verts, bool smooth,
              std::vector<LPoint3>& scratch, LThreadGroup* workers) const;

  private:
    void SmoothQuads(const LPoint3* from, LPoint3* to, int first, int last) const;
};

template <class T>
void LLevelRule::InterpolateSome(T* values, int first, int from, int to) const {
    const int edges = static_cast<int>(parents.size());
    for (int i = from; i < to && i < edges; ++i) {
        const auto [a, b] = parents[i];
        values[first + i] = a < 0 ? T{} : (values[a] + values[b]) * 0.5f;
    }
    for (int i = std::max(from, edges); i < to; ++i) {
        const auto& [a, b, c] = centres[i - edges];
        values[first + i] = a < 0 ? T{} : (values[a] + values[b] + values[c]) / 3.0f;
    }
}

}  // namespace VantrelSDK
