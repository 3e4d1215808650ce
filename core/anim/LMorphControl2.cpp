#include "core/anim/LMorphControl2.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>

#include "core/anim/LControlCollection.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

/// A number moved by some, as far as numbers go.
int Moved(int number, int64_t by) {
    return static_cast<int>(std::clamp<int64_t>(int64_t{number} + by, INT_MIN, INT_MAX));
}

const char* PrefixOf(int type) {
    switch (type) {
        case LMorphControl2::kPhoneme:
            return "Phonemes ";
        case LMorphControl2::kCorrective:
            return "Corrective Sculpt ";
        case LMorphControl2::kPoses:
            return "Poses ";
        default:
            return "Undefined ";
    }
}

}  // namespace

LNode* LMorphControl2::GetLNode() const {
    return col ? col->owner() : nullptr;
}

void LMorphControl2::Invalidate() {
    if (LNode* node = GetLNode()) node->Invalidate();
}

void LMorphControl2::SetType(int type) {
    Invalidate();
    type_ = type;
}

void LMorphControl2::InitName() {
    const int place = col ? col->IndexOf(this) : -1;
    cname_ = place < 0 ? "Undefined" : fmt::format("{}{:02}", PrefixOf(type_), place + 1);
}

void LMorphControl2::SetActive(bool active) {
    active_ = active;
}

void LMorphControl2::Enable(bool on) {
    Invalidate();
    enabled_ = on;
}

void LMorphControl2::SetJointsOn(bool on) {
    jointsOn_ = on;
}

// Keys.

const LMorphKey* LMorphControl2::GetKeyByIndex(int i) const {
    return i >= 0 && i < NumKeys() ? &keys_[i] : nullptr;
}

const LMorphKey* LMorphControl2::GetKeyByTime(int time, int tolerance) const {
    const auto from = Moved(time, -int64_t{tolerance});
    const auto key = std::ranges::lower_bound(keys_, from, {}, &LMorphKey::time);
    return key != keys_.end() && int64_t{key->time} - time <= tolerance ? &*key : nullptr;
}

const LMorphKey* LMorphControl2::GetKeyBeforeTime(int time) const {
    const auto after = std::ranges::upper_bound(keys_, time, {}, &LMorphKey::time);
    return after == keys_.begin() ? nullptr : &*std::prev(after);
}

const LMorphKey* LMorphControl2::GetKeyAfterTime(int time) const {
    const auto key = std::ranges::lower_bound(keys_, time, {}, &LMorphKey::time);
    return key == keys_.end() ? nullptr : &*key;
}

int LMorphControl2::GetKeyIndex(int time) const {
    return GetPtrIndex(GetKeyByTime(time, 0));
}

int LMorphControl2::GetPtrIndex(const LMorphKey* key) const {
    return key ? static_cast<int>(key - keys_.data()) : -1;
}

void LMorphControl2::Clear() {
    Invalidate();
    keys_.clear();
}

void LMorphControl2::AddKey(const LMorphKey& key) {
    Invalidate();
    const bool first = keys_.empty() || keys_.front().time >= key.time;
    keys_.insert(
        first ? keys_.begin() : std::ranges::upper_bound(keys_, key.time, {}, &LMorphKey::time),
        key);
}

std::optional<LMorphKey> LMorphControl2::RemoveKeyByIndex(int i) {
    if (i < 0 || i >= NumKeys()) return {};
    Invalidate();
    const LMorphKey key = keys_[i];
    keys_.erase(keys_.begin() + i);
    return key;
}

std::vector<LMorphKey> LMorphControl2::RemoveKeysInInterval(int from, int to) {
    const auto first = std::ranges::upper_bound(keys_, from, {}, &LMorphKey::time);
    const auto last = std::find_if(first, keys_.end(), [to](auto& key) { return key.time >= to; });
    if (first == last) return {};
    Invalidate();
    std::vector<LMorphKey> removed(first, last);
    keys_.erase(first, last);
    return removed;
}

void LMorphControl2::TargetDeleted(int index) {
    Invalidate();
    for (LMorphKey& key : keys_)
        if (key.id == index)
            key.id = LMorphKey::kNeutral;
        else if (key.id > index)
            --key.id;
}

void LMorphControl2::LowerTargets() {
    Invalidate();
    for (LMorphKey& key : keys_) key.id = Moved(key.id, -1);
}

// Evaluation.

/// The key whose target a time is after, or at; null before the first.
const LMorphKey* LMorphControl2::KeyInForce(int time) const {
    const LMorphKey* at = GetKeyByTime(time, 0);
    return at ? at : GetKeyBeforeTime(time);
}

LTrackShares LMorphControl2::SharesAt(int time) const {
    LTrackShares shares;
    const int at = GetPtrIndex(KeyInForce(time));
    if (at < 0) {
        if (HasKeys()) shares.valid1 = keys_.front().time;
        return shares;
    }
    const LMorphKey& k1 = keys_[at];
    const LMorphKey* k2 = GetKeyByIndex(at + 1);
    if (!k2) {
        shares.Add(k1, 1);
        shares.valid0 = k1.time;
        return shares;
    }
    const int64_t length = int64_t{k2->time} - k1.time;
    const float u =
        length == 0 ? 0 : static_cast<float>(int64_t{time} - k1.time) / static_cast<float>(length);
    const float u2 = u * u, u3 = u2 * u;
    if (const LMorphKey* k0 = GetKeyByIndex(at - 1)) shares.Add(*k0, 0.5f * (2 * u2 - u3 - u));
    shares.Add(k1, 0.5f * (3 * u3 - 5 * u2 + 2));
    shares.Add(*k2, 0.5f * (4 * u2 - 3 * u3 + u));
    if (const LMorphKey* k3 = GetKeyByIndex(at + 2)) shares.Add(*k3, 0.5f * (u3 - u2));
    shares.valid0 = shares.valid1 = time;
    return shares;
}

LTrackShares LMorphControl2::StepAt(int time) const {
    LTrackShares shares;
    const int at = GetPtrIndex(KeyInForce(time));
    if (at >= 0) {
        shares.Add(keys_[at], 1);
        shares.valid0 = keys_[at].time;
    }
    if (const LMorphKey* next = GetKeyByIndex(at + 1)) shares.valid1 = next->time;
    return shares;
}

}  // namespace VantrelSDK
