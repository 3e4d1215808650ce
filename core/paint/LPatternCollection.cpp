#include "core/paint/LPatternCollection.h"

namespace VantrelSDK {

LPattern* LPatternCollection::GetPattern(int i) const {
    return i >= 0 && i < GetNumPatterns() ? patterns_[static_cast<size_t>(i)].get() : nullptr;
}

int LPatternCollection::GetActiveIndex() const {
    for (int i = 0; i < GetNumPatterns(); ++i)
        if (GetPattern(i)->IsActive()) return i;
    return -1;
}

bool LPatternCollection::SetAciveIndex(int i) {
    if (i != -1) {
        LPattern* chosen = GetPattern(i);
        if (!chosen) return false;
        const bool was = chosen->IsActive();
        if (!chosen->SetActive(true)) return chosen->SetActive(was), false;
    }
    for (int other = 0; other < GetNumPatterns(); ++other)
        if (other != i) GetPattern(other)->SetActive(false);
    return true;
}

LPattern* LPatternCollection::AddNewPattern() {
    Append(newPattern());
    return patterns_.back().get();
}

bool LPatternCollection::DeletePattern(int i) {
    if (!GetPattern(i)) return false;
    patterns_.erase(patterns_.begin() + i);
    return true;
}

bool LPatternCollection::Reload() {
    bool all = true;
    for (const auto& pattern : patterns_) all &= pattern->Reload();
    return all;
}

}  // namespace VantrelSDK
