#pragma once

#include <cstddef>
#include <vector>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// Offsets of some of a row of vertices, held as runs of neighbours in vertex order: a shape that
/// moves a tenth of a face costs a tenth, and a sum of many walks straight through memory.
class SparseOffsets {
  public:
    /// Vertices first to first + count - 1 have the offsets from `place` on.
    struct Run {
        int first, count;
        size_t place;
    };

    /// Takes the offsets of vertices 0 to count - 1 that aren't exactly zero.
    void Assign(const LPoint3* offsets, int count);
    /// Of `count` vertices only the first has an offset, which is zero.
    void AssignPlaceholder(int count);
    void Clear() { *this = SparseOffsets(); }
    /// Drops the vertices from `count` on.
    void Truncate(int count);

    /// How many vertices there are, with an offset or without.
    int NumVerts() const { return nverts_; }
    /// How many have one.
    size_t size() const { return values_.size(); }
    bool empty() const { return values_.empty(); }
    const std::vector<Run>& Runs() const { return runs_; }
    const std::vector<LPoint3>& Values() const { return values_; }

    /// The offset of a vertex; null when it has none.
    const LPoint3* Find(int vert) const;
    /// verts[v] += offset * weight for the vertices with an offset below `limit` (at most as many
    /// as there are in `verts`). Returns how many there were.
    int AddTo(LPoint3* verts, int limit, float weight) const;
    /// Calls visit(vertex, offset) in vertex order, below `limit`, until it returns true.
    template <class Visit>
    void ForEach(int limit, Visit visit) const {
        for (const Run& run : runs_)
            for (int i = 0; i < run.count && run.first + i < limit; ++i)
                if (visit(run.first + i, values_[run.place + i])) return;
    }

    bool operator==(const SparseOffsets& o) const {
        return nverts_ == o.nverts_ && values_ == o.values_ && SameRuns(o);
    }

  private:
    bool SameRuns(const SparseOffsets& o) const;

    int nverts_ = 0;
    std::vector<Run> runs_;
    std::vector<LPoint3> values_;
};

}  // namespace VantrelSDK
