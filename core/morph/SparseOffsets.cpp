#include "core/morph/SparseOffsets.h"

#include <immintrin.h>

#include <algorithm>

namespace VantrelSDK {

namespace {

/// to[i] += from[i] * weight: the three numbers of a vertex are all treated alike.
void AddRow(float* to, const float* from, size_t count, float weight) {
    const __m128 w = _mm_set1_ps(weight);
    size_t i = 0;
    for (; i + 4 <= count; i += 4)
        _mm_storeu_ps(to + i,
                      _mm_add_ps(_mm_loadu_ps(to + i), _mm_mul_ps(_mm_loadu_ps(from + i), w)));
    for (; i < count; ++i) to[i] += from[i] * weight;
}

}  // namespace

void SparseOffsets::Assign(const LPoint3* offsets, int count) {
    Clear();
    nverts_ = count;
    for (int v = 0; v < count; ++v) {
        if (offsets[v] == LPoint3::Zero) continue;
        if (runs_.empty() || runs_.back().first + runs_.back().count != v)
            runs_.push_back({v, 0, values_.size()});
        ++runs_.back().count;
        values_.push_back(offsets[v]);
    }
    runs_.shrink_to_fit();
    values_.shrink_to_fit();
}

void SparseOffsets::AssignPlaceholder(int count) {
    Clear();
    nverts_ = count;
    runs_ = {{0, 1, 0}};
    values_ = {LPoint3::Zero};
}

void SparseOffsets::Truncate(int count) {
    if (count >= nverts_) return;
    nverts_ = std::max(count, 0);
    while (!runs_.empty() && runs_.back().first >= nverts_) runs_.pop_back();
    if (!runs_.empty())
        runs_.back().count = std::min(runs_.back().count, nverts_ - runs_.back().first);
    values_.resize(runs_.empty() ? 0 : runs_.back().place + runs_.back().count);
}

const LPoint3* SparseOffsets::Find(int vert) const {
    const auto after = std::upper_bound(runs_.begin(), runs_.end(), vert,
                                        [](int v, const Run& run) { return v < run.first; });
    if (after == runs_.begin()) return nullptr;
    const Run& run = *std::prev(after);
    return vert - run.first < run.count ? &values_[run.place + (vert - run.first)] : nullptr;
}

int SparseOffsets::AddTo(LPoint3* verts, int limit, float weight) const {
    int touched = 0;
    for (const Run& run : runs_) {
        const int count = std::min(run.count, limit - run.first);
        if (count <= 0) break;
        AddRow(&verts[run.first].x, &values_[run.place].x, 3 * static_cast<size_t>(count), weight);
        touched += count;
    }
    return touched;
}

bool SparseOffsets::SameRuns(const SparseOffsets& o) const {
    return std::equal(
        runs_.begin(), runs_.end(), o.runs_.begin(), o.runs_.end(),
        [](const Run& a, const Run& b) { return a.first == b.first && a.count == b.count; });
}

}  // namespace VantrelSDK
