#pragma once

#include "core/subdiv/LLevelRule.h"

namespace VantrelSDK {

/// The values that a level of either kind gives its new vertices, by its rule: the mean of an
/// edge's ends, or of the corners of a single triangle. Nothing is smoothed, and equal values stay
/// what they are.
template <class T>
class LevelValues {
  public:
    /// Both are borrowed: `values` are by vertex, of all vertices that the tables name as parents.
    LevelValues(const LLevelTables& tables, const T* values) : tables_(tables), values_(values) {}

    int GetNumExtVerts() const { return tables_.NumNewVerts(); }
    /// The zero value for a vertex without parents.
    T GetExtVert(int i) const {
        const int edges = static_cast<int>(tables_.parents.size());
        if (i < edges) {
            const auto [a, b] = tables_.parents[i];
            return a < 0 ? T{} : (values_[a] + values_[b]) * 0.5f;
        }
        const auto& [a, b, c] = tables_.centres[i - edges];
        if (a < 0) return T{};
        if (values_[a] == values_[b] && values_[a] == values_[c]) return values_[a];
        return (values_[a] + values_[b] + values_[c]) * 0.33333334f;
    }
    /// One of the parents of new vertex i has a mark, which is by vertex.
    bool HasMarkedParent(int i, const char* marks) const {
        const int edges = static_cast<int>(tables_.parents.size());
        if (i < edges) {
            const auto [a, b] = tables_.parents[i];
            return a >= 0 && (marks[a] || marks[b]);
        }
        const auto& [a, b, c] = tables_.centres[i - edges];
        return a >= 0 && (marks[a] || marks[b] || marks[c]);
    }

  private:
    const LLevelTables& tables_;
    const T* values_;
};

}  // namespace VantrelSDK
