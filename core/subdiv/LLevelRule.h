#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <utility>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LEdgeList.h"
#include "core/mesh/LIndexRows.h"
#include "core/mesh/LMeshTopology.h"

namespace VantrelSDK {

class LThreadGroup;

/// What a level is filled by. Vertices of the levels below come first, then one per edge, then one
/// per single triangle of a quad level.
struct LLevelTables {
    /// New vertex i is the middle of vertices parents[i].first and second; of an edge with an end
    /// out of range, (-1, -1), the zero point.
    std::vector<std::pair<int, int>> parents;
    /// The vertices behind those are the centres of these three.
    std::vector<std::array<int, 3>> centres;
    /// Of a triangle level: the vertices that stay, empty for none.
    LVertOpenList open;
    /// Of a quad level, by vertex: the others whose mean with it is its smooth position; none for
    /// one that stays.
    LIndexRows rings;

    int NumNewVerts() const { return static_cast<int>(parents.size() + centres.size()); }
};

/// How the vertices of a level come from those below: what it takes to fill them anew from other
/// positions, without any look at edges or pairs. Immutable once the level exists, shared by all
/// meshes that have the level.
///
/// A level that was read from a stream gets its tables when they are first asked for: nobody may
/// ever want them. Whoever then reads them on workers calls tables() on the main thread before.
class LLevelRule {
  public:
    /// The level was smoothed after the split.
    bool smooth = false;
    bool protectOpen = false;
    bool isQuad = false;

    LLevelRule(bool isQuad_, bool smooth_, bool protectOpen_, LLevelTables tables)
        : smooth(smooth_), protectOpen(protectOpen_), isQuad(isQuad_), tables_(std::move(tables)) {}
    /// `make` gives the tables.
    LLevelRule(bool isQuad_, bool smooth_, bool protectOpen_, std::function<LLevelTables()> make)
        : smooth(smooth_), protectOpen(protectOpen_), isQuad(isQuad_), make_(std::move(make)) {}

    /// May throw std::bad_alloc when they have to be made.
    const LLevelTables& tables() const {
        if (make_) {
            tables_ = make_();
            make_ = nullptr;
        }
        return tables_;
    }
    int NumNewVerts() const { return tables().NumNewVerts(); }

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
    mutable LLevelTables tables_;
    mutable std::function<LLevelTables()> make_;

    void SmoothQuads(const LPoint3* from, LPoint3* to, int first, int last) const;
};

template <class T>
void LLevelRule::InterpolateSome(T* values, int first, int from, int to) const {
    const std::vector<std::pair<int, int>>& parents = tables().parents;
    const std::vector<std::array<int, 3>>& centres = tables().centres;
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
