#include "core/mesh/LIndexCache.h"

#include <algorithm>
#include <utility>

namespace VantrelSDK {

void LIndexCache::Clear() {
    if (!unmarked_)
        for (const int i : items_) marks_[i] = 0;
    unmarked_ = false;
    items_.clear();
}

void LIndexCache::MarkItems() {
    for (const int i : items_) marks_[i] = 1;
    unmarked_ = false;
}

bool LIndexCache::Reserve(size_t count) {
    try {
        items_.reserve(count);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool LIndexCache::Reset(int universe) {
    items_.clear();
    unmarked_ = false;
    const bool done = marks_.Reset(universe > 0 ? universe : 0);
    marks_.Populate();
    return done;
}

void LIndexCache::Traverse(NodeCallback* callback) const {
    for (size_t i = 0; i < items_.size(); ++i) {
        Node node{items_[i]};
        callback->proc(&node);
    }
}

bool LIndexCache::Grow(int i) {
    if (i < 0) return false;
    ZeroedArray<uint8_t> marks;
    const size_t needed = static_cast<size_t>(i) + 1;
    if (!marks.Reset(std::max(needed, 2 * marks_.size()))) return false;
    for (const int item : items_) marks[item] = 1;
    marks_ = std::move(marks);
    return true;
}

}  // namespace VantrelSDK
