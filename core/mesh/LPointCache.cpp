#include "core/mesh/LPointCache.h"

#include <algorithm>
#include <new>
#include <utility>

namespace VantrelSDK {

const LPointCache::Entry* LPointCache::Find(int key) const {
    if (static_cast<size_t>(key) >= slots_.size() || slots_[key] == 0) return nullptr;
    return &entries_[slots_[key] - 1];
}

bool LPointCache::AddPoint(int key, float weight, const LPoint3& point) {
    if (Find(key)) return false;
    if (static_cast<size_t>(key) >= slots_.size() && !Grow(key)) return false;
    try {
        entries_.push_back({key, weight, point});
    } catch (const std::bad_alloc&) {
        return false;
    }
    slots_[key] = static_cast<int>(entries_.size());
    return true;
}

bool LPointCache::SetPoint(int key, const LPoint3& point) {
    if (!Find(key)) return false;
    entries_[slots_[key] - 1].point = point;
    return true;
}

LPoint3 LPointCache::GetPoint(int key) const {
    const Entry* entry = Find(key);
    return entry ? entry->point : LPoint3::Zero;
}

void LPointCache::Normalize() {
    for (Entry& entry : entries_) entry.point.Normalize();
}

void LPointCache::NormalizeAndExport(std::span<LPoint3> out) {
    Normalize();
    for (const Entry& entry : entries_)
        if (static_cast<size_t>(entry.key) < out.size()) out[entry.key] = entry.point;
}

void LPointCache::Clear() {
    for (const Entry& entry : entries_) slots_[entry.key] = 0;
    entries_.clear();
}

bool LPointCache::Grow(int key) {
    if (key < 0) return false;
    ZeroedArray<int> slots;
    const size_t needed = static_cast<size_t>(key) + 1;
    if (!slots.Reset(std::max(needed, 2 * slots_.size()))) return false;
    for (const Entry& entry : entries_) slots[entry.key] = slots_[entry.key];
    slots_ = std::move(slots);
    return true;
}

}  // namespace VantrelSDK
