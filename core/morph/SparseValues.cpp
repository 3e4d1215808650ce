#include "core/morph/SparseValues.h"

#include <immintrin.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace VantrelSDK {

namespace {

/// to[i] += from[i] * weight: the numbers of a vertex are all treated alike.
void AddRow(float* to, const float* from, size_t count, float weight) {
    const __m128 w = _mm_set1_ps(weight);
    size_t i = 0;
    for (; i + 4 <= count; i += 4)
        _mm_storeu_ps(to + i,
                      _mm_add_ps(_mm_loadu_ps(to + i), _mm_mul_ps(_mm_loadu_ps(from + i), w)));
    for (; i < count; ++i) to[i] += from[i] * weight;
}

template <class T>
constexpr size_t kFloats = sizeof(T) / sizeof(float);

}  // namespace

template <class T>
void SparseValues<T>::Assign(const T* values, int count) {
    Clear();
    for (int v = 0; v < count; ++v)
        if (!(values[v] == T())) Append(v, values[v]);
    nverts_ = std::max(count, 0);
    runs_.shrink_to_fit();
    values_.shrink_to_fit();
}

template <class T>
void SparseValues<T>::AssignPlaceholder(int count) {
    Clear();
    nverts_ = count;
    runs_ = {{0, 1, 0}};
    values_ = {T()};
}

template <class T>
bool SparseValues<T>::Append(int vert, const T& value) {
    const int next = runs_.empty() ? 0 : runs_.back().first + runs_.back().count;
    if (vert < next || vert == INT_MAX) return false;
    if (runs_.empty() || next != vert) runs_.push_back({vert, 0, values_.size()});
    ++runs_.back().count;
    values_.push_back(value);
    nverts_ = std::max(nverts_, vert + 1);
    return true;
}

template <class T>
void SparseValues<T>::Truncate(int count) {
    if (count >= nverts_) return;
    nverts_ = std::max(count, 0);
    while (!runs_.empty() && runs_.back().first >= nverts_) runs_.pop_back();
    if (!runs_.empty())
        runs_.back().count = std::min(runs_.back().count, nverts_ - runs_.back().first);
    values_.resize(runs_.empty() ? 0 : runs_.back().place + runs_.back().count);
}

template <class T>
void SparseValues<T>::DropZeros() {
    SparseValues kept;
    ForEach(nverts_, [&](int v, const T& value) {
        if (!(value == T())) kept.Append(v, value);
        return false;
    });
    if (kept.empty()) kept.AssignPlaceholder(nverts_);
    kept.nverts_ = nverts_;
    *this = std::move(kept);
}

template <class T>
const T* SparseValues<T>::Find(int vert) const {
    const auto after = std::upper_bound(runs_.begin(), runs_.end(), vert,
                                        [](int v, const Run& run) { return v < run.first; });
    if (after == runs_.begin()) return nullptr;
    const Run& run = *std::prev(after);
    return vert - run.first < run.count ? &values_[run.place + (vert - run.first)] : nullptr;
}

template <class T>
int SparseValues<T>::AddTo(T* verts, int limit, float weight) const {
    int touched = 0;
    for (const Run& run : runs_) {
        const int count = std::min(run.count, limit - run.first);
        if (count <= 0) break;
        AddRow(reinterpret_cast<float*>(verts + run.first),
               reinterpret_cast<const float*>(&values_[run.place]), kFloats<T> * count, weight);
        touched += count;
    }
    return touched;
}

template <class T>
bool SparseValues<T>::SameRuns(const SparseValues& o) const {
    return std::equal(
        runs_.begin(), runs_.end(), o.runs_.begin(), o.runs_.end(),
        [](const Run& a, const Run& b) { return a.first == b.first && a.count == b.count; });
}

template class SparseValues<LPoint3>;
template class SparseValues<LAColor>;

}  // namespace VantrelSDK
