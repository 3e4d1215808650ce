#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// A surface cut into 20 x 20 x 20 cells, for all levels at once: which faces lie in a cell, and in
/// which cells a vertex is drawn. A face is in each cell that holds one of its corners, borders
/// included. Made once of a surface; what moves later stays where it is.
class VoxelGrid {
  public:
    static constexpr int kSide = 20, kCount = kSide * kSide * kSide;

    /// `verts`: of the top level, and so of those below; `levels`: the faces of each level from 0.
    /// A vertex keeps its number on all levels.
    void Build(std::span<const LPoint3> verts, std::span<const std::span<const LFace>> levels);
    bool IsBuilt() const { return !cells_.empty(); }
    void Clear() { *this = VoxelGrid(); }

    /// By cell, x outermost, z innermost; ascending.
    std::span<const int> Faces(int cell, int level) const {
        const Level& l = levels_[static_cast<size_t>(level)];
        const auto first = l.starts[static_cast<size_t>(cell)];
        return {l.faces.data() + first, l.starts[static_cast<size_t>(cell) + 1] - first};
    }
    int GetNumLevels() const { return static_cast<int>(levels_.size()); }
    void Bounds(int cell, LPoint3& min, LPoint3& max) const;

    /// Calls act(cell) for each cell that draws a face of this vertex on some level, once.
    template <class Act>
    void ForCellsOf(int vert, const Act& act) const {
        const uint16_t only = cells_[static_cast<size_t>(vert)];
        if (only < kCount) return act(static_cast<int>(only));
        if (only == kNone) return;
        auto at =
            std::lower_bound(several_.begin(), several_.end(), std::pair<int, uint16_t>(vert, 0));
        for (; at != several_.end() && at->first == vert; ++at) act(static_cast<int>(at->second));
    }
    /// In bytes.
    size_t Memory() const;

  private:
    struct Level {
        /// The faces of cell c stand from starts[c] to starts[c + 1].
        std::vector<uint32_t> starts;
        std::vector<int> faces;
    };
    static constexpr uint16_t kNone = 0xffff, kSeveral = 0xfffe;

    void Place(std::span<const LPoint3> verts);
    void Distribute(std::span<const LFace> faces, Level& level);
    void Draws(int vert, uint16_t cell);

    /// Where the cells begin and end along each axis.
    float borders_[3][kSide + 1] = {};
    std::vector<Level> levels_;
    /// While building: the cell of a vertex, and in its upper bits on which lower borders it lies.
    std::vector<uint16_t> places_;
    /// The only cell that draws a vertex; those of kSeveral stand in several_, ascending.
    std::vector<uint16_t> cells_;
    std::vector<std::pair<int, uint16_t>> several_;
};

}  // namespace VantrelSDK
