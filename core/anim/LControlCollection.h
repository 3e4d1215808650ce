#pragma once

#include <memory>
#include <vector>

#include "core/anim/LMorphControl2.h"
#include "core/morph/LFrameTerm.h"

namespace VantrelSDK {

class LMorphTarget;

/// The tracks of a node, which it owns. What each enabled track shows is added to a frame, in the
/// order of their indices; phoneme tracks alone are evaluated.
class LControlCollection : public LFrameTerm {
  public:
    /// What takes the place of a track as the active one.
    enum PseudoTrack { kPosesTrack = 888, kGroupsTrack = 999, kMixTrack = 1000, kHostTrack = 1001 };
    static bool IsPseudoTrack(int i) {
        return i == kPosesTrack || i == kGroupsTrack || i == kMixTrack || i == kHostTrack;
    }

    /// `owner` is borrowed.
    explicit LControlCollection(LNode& owner) : owner_(owner) {}

    LNode* owner() const { return &owner_; }
    /// Makes a track of the kind that this collection holds, without adding it.
    virtual std::unique_ptr<LMorphControl2> createNewControl();

    int NumMorphCtrls() const { return static_cast<int>(submorphs_.size()); }
    /// Null out of range.
    LMorphControl2* GetMorphCtrl(int i) const;
    /// -1 for a track that is not in the collection.
    int IndexOf(const LMorphControl2* track) const;
    /// Its index.
    int AddMorphCtrl(std::unique_ptr<LMorphControl2> track);
    /// Null out of range.
    std::unique_ptr<LMorphControl2> RemoveMorphCtrl(int i);
    void RemoveAll();
    bool HasKeys() const;

    /// The first active one; null, and -1, for none.
    LMorphControl2* GetActive() const { return GetMorphCtrl(GetActiveIdx()); }
    int GetActiveIdx() const;
    /// Makes one the active one; none for a pseudo-track. Nothing for an index that is neither.
    void SetActive(int i);
    /// False, or 0, out of range.
    bool IsActive(int i) const;
    bool IsEnabled(int i) const;
    int GetType(int i) const;
    void Enable(int i, bool on);
    /// The keys of phoneme tracks follow a list of targets that lost one.
    void TargetDeleted(int index);

    /// Calls add(target, weight) for what the enabled phoneme tracks show in a frame, by the keys
    /// around its time, and narrows how long that is right.
    template <class Add>
    void ForShares(LFrame& frame, const Add& add) const;

    bool Plays() const override { return HasKeys(); }
    void AddTo(LSubdivMesh& delta, LFrame& frame) override;
    void Tag(int time, VertTagClallback& tag) const override;

    /// The tracks as a record. Both return one of LBlindData's codes. Reading replaces all tracks;
    /// a failed one leaves those that could be read.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);
    /// Adds what an older collection held, a master track and those under it, each as a track of
    /// `type`.
    int ImportTracks(LBlindData* stream, int type);
    /// See LMorphControl2's, for the phoneme tracks.
    void LowerTargets();

  private:
    template <class Call>
    void ForPlayed(const Call& call) const;
    template <class Add>
    static void ForShares(const LMorphControl2& track, LFrame& frame, const Add& add);
    LMorphControl2& NewTrack(int type);

    LNode& owner_;
    std::vector<std::unique_ptr<LMorphControl2>> submorphs_;
};

/// Calls for the tracks that are evaluated, in order.
template <class Call>
void LControlCollection::ForPlayed(const Call& call) const {
    for (const auto& track : submorphs_)
        if (track->IsEnabled() && track->GetType() == LMorphControl2::kPhoneme) call(*track);
}

template <class Add>
void LControlCollection::ForShares(const LMorphControl2& track, LFrame& frame, const Add& add) {
    const LTrackShares shares =
        frame.interpolate ? track.SharesAt(frame.time) : track.StepAt(frame.time);
    for (const LTrackShares::Share& share : shares.All()) add(share.id, share.weight);
    frame.Narrow(shares.valid0, shares.valid1);
}

template <class Add>
void LControlCollection::ForShares(LFrame& frame, const Add& add) const {
    ForPlayed([&](const LMorphControl2& track) { ForShares(track, frame, add); });
}

}  // namespace VantrelSDK
