#pragma once

#include <cstddef>
#include <vector>

#include "core/math/LColor.h"
#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// Values of some of a row of vertices, held as runs of neighbours in vertex order: a shape that
/// moves a tenth of a face costs a tenth, and a sum of many walks straight through memory.
///
/// T is a row of floats whose default is zero, which stands for no value.
template <class T>
class SparseValues {
  public:
    /// Vertices first to first + count - 1 have the values from `place` on.
    struct Run {
        int first, count;
        size_t place;
    };

    /// Takes the values of vertices 0 to count - 1 that aren't exactly zero.
    void Assign(const T* values, int count);
    /// Of `count` vertices only the first has a value, which is zero.
    void AssignPlaceholder(int count);
    /// Adds a value of a vertex behind all that have one; there are then at least as many vertices.
    /// False, and no change, for another vertex.
    bool Append(int vert, const T& value);
    void Clear() { *this = SparseValues(); }
    /// Drops the vertices from `count` on.
    void Truncate(int count);
    /// There are at least `count` vertices, the new ones without a value.
    void Pad(int count) {
        if (count > nverts_) nverts_ = count;
    }
    /// Replaces each value by change(vertex, value). Those that become zero are dropped; when none
    /// is left, the placeholder stays.
    template <class Change>
    void Transform(Change change);

    /// How many vertices there are, with a value or without.
    int NumVerts() const { return nverts_; }
    /// How many have one.
    size_t size() const { return values_.size(); }
    bool empty() const { return values_.empty(); }
    const std::vector<Run>& Runs() const { return runs_; }
    const std::vector<T>& Values() const { return values_; }

    /// The value of a vertex; null when it has none.
    const T* Find(int vert) const;
    /// verts[v] += value * weight for the vertices with a value below `limit` (at most as many as
    /// there are in `verts`). Returns how many there were.
    int AddTo(T* verts, int limit, float weight) const;
    /// Calls visit(vertex, value) in vertex order, below `limit`, until it returns true.
    template <class Visit>
    void ForEach(int limit, Visit visit) const {
        for (const Run& run : runs_)
            for (int i = 0; i < run.count && run.first + i < limit; ++i)
                if (visit(run.first + i, values_[run.place + i])) return;
    }

    bool operator==(const SparseValues& o) const {
        return nverts_ == o.nverts_ && values_ == o.values_ && SameRuns(o);
    }

  private:
    bool SameRuns(const SparseValues& o) const;
    void DropZeros();

    int nverts_ = 0;
    std::vector<Run> runs_;
    std::vector<T> values_;
};

using SparseOffsets = SparseValues<LPoint3>;
using SparseColors = SparseValues<LAColor>;

template <class T>
template <class Change>
void SparseValues<T>::Transform(Change change) {
    bool zeros = false;
    for (const Run& run : runs_)
        for (int i = 0; i < run.count; ++i) {
            T& value = values_[run.place + i];
            value = change(run.first + i, value);
            zeros |= value == T();
        }
    if (zeros) DropZeros();
}

}  // namespace VantrelSDK
