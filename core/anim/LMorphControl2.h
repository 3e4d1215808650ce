#pragma once

#include <array>
#include <climits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/anim/LMorphKey.h"

namespace VantrelSDK {

class LBlindData;
class LControlCollection;
class LNode;

/// What the keys around a time have the mesh show then.
struct LTrackShares {
    struct Share {
        /// As in a key: the neutral and what doesn't exist add nothing.
        int id;
        float weight;
    };

    std::span<const Share> All() const { return {shares.data(), static_cast<size_t>(count)}; }
    void Add(const LMorphKey& key, float weight) { shares[count++] = {key.id, weight}; }

    std::array<Share, 4> shares;
    int count = 0;
    /// The times that have the same shares. The last one may be that of the next key, which begins
    /// something else.
    int valid0 = INT_MIN, valid1 = INT_MAX;
};

/// A track: keys in the order of time, each with an index from 0. Keys of one time stand in the
/// order in which they were added, but for the time of the first one, where a new key comes first.
/// What changes a track makes its node's delta due for a new evaluation.
///
/// Pointers to keys hold until the track changes. Times are in ticks.
class LMorphControl2 {
  public:
    enum controlType { kUndefined = 0, kPhoneme = 1, kCorrective = 2, kPoses = 3 };

    /// `col` is borrowed and may be null.
    explicit LMorphControl2(LControlCollection* owner = nullptr) : col(owner) {}
    LMorphControl2(const LMorphControl2&) = delete;
    LMorphControl2& operator=(const LMorphControl2&) = delete;
    virtual ~LMorphControl2() = default;

    virtual LNode* GetLNode() const;
    const std::string& GetName() const { return cname_; }
    void SetName(std::string name) { cname_ = std::move(name); }
    /// A controlType.
    int GetType() const { return type_; }
    void SetType(int type);
    /// Names it by its type and its place in the collection, counted from 01.
    void InitName();
    /// New keys go to it, and the host's curve shows its keys.
    bool IsActive() const { return active_; }
    void SetActive(bool active);
    /// It is evaluated.
    bool IsEnabled() const { return enabled_; }
    void Enable(bool on);
    /// It drives the joints that its targets keep.
    bool GetJointsOn() const { return jointsOn_; }
    void SetJointsOn(bool on);

    std::span<const LMorphKey> Keys() const { return keys_; }
    int NumKeys() const { return static_cast<int>(keys_.size()); }
    bool HasKeys() const { return !keys_.empty(); }
    /// Null out of range.
    const LMorphKey* GetKeyByIndex(int i) const;
    /// The first key at a time or at most `tolerance` away; null for none.
    const LMorphKey* GetKeyByTime(int time, int tolerance) const;
    /// The last key at or before a time; the first one at or after it; null for none.
    const LMorphKey* GetKeyBeforeTime(int time) const;
    const LMorphKey* GetKeyAfterTime(int time) const;
    /// The index of the first key at a time, -1 for none; of a key of this track.
    int GetKeyIndex(int time) const;
    int GetPtrIndex(const LMorphKey* key) const;

    void Clear();
    void AddKey(const LMorphKey& key);
    /// Takes a key out; none for an index out of range.
    std::optional<LMorphKey> RemoveKeyByIndex(int i);
    /// Takes out the keys between two times, those at them not among them; they come back in
    /// order.
    std::vector<LMorphKey> RemoveKeysInInterval(int from, int to);
    /// A target was taken out of the node's list: its keys show the neutral, and those of later
    /// ones follow them.
    void TargetDeleted(int index);
    /// In blocks of older versions targets are counted with the neutral, which is the first.
    void LowerTargets();

    /// Between two keys the Catmull-Rom curve through them and their neighbours (without regard to
    /// how far apart these are in time): a missing neighbour has no share. From the last key on its
    /// target, before the first one nothing. Source: E. Catmull, R. Rom, A class of local
    /// interpolating splines, 1974.
    LTrackShares SharesAt(int time) const;
    /// The target of the last key, from it to the next one.
    LTrackShares StepAt(int time) const;

    /// The track as a record. Both return one of LBlindData's codes. A failed reading leaves a
    /// track with some of its keys.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);
    /// The older form, which has no type, name and joints.
    int ReadOldFrom(LBlindData* stream);

  protected:
    LControlCollection* const col;

  private:
    void Invalidate();
    const LMorphKey* KeyInForce(int time) const;
    int ReadKey(LBlindData* stream);
    void SortRead();

    std::vector<LMorphKey> keys_;
    bool active_ = false, enabled_ = true, jointsOn_ = false;
    int type_ = kUndefined;
    std::string cname_ = "undefined";
};

}  // namespace VantrelSDK
