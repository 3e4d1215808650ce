#include "core/anim/LControlCollection.h"

#include <algorithm>

#include "core/morph/MorphCallbacks.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

std::unique_ptr<LMorphControl2> LControlCollection::createNewControl() {
    return std::make_unique<LMorphControl2>(this);
}

LMorphControl2* LControlCollection::GetMorphCtrl(int i) const {
    return i >= 0 && i < NumMorphCtrls() ? submorphs_[i].get() : nullptr;
}

int LControlCollection::IndexOf(const LMorphControl2* track) const {
    for (int i = 0; i < NumMorphCtrls(); ++i)
        if (submorphs_[i].get() == track) return i;
    return -1;
}

int LControlCollection::AddMorphCtrl(std::unique_ptr<LMorphControl2> track) {
    submorphs_.push_back(std::move(track));
    owner_.Invalidate();
    return NumMorphCtrls() - 1;
}

std::unique_ptr<LMorphControl2> LControlCollection::RemoveMorphCtrl(int i) {
    if (!GetMorphCtrl(i)) return nullptr;
    owner_.Invalidate();
    std::unique_ptr<LMorphControl2> track = std::move(submorphs_[i]);
    submorphs_.erase(submorphs_.begin() + i);
    return track;
}

void LControlCollection::RemoveAll() {
    owner_.Invalidate();
    submorphs_.clear();
}

bool LControlCollection::HasKeys() const {
    return std::ranges::any_of(submorphs_, [](const auto& track) { return track->HasKeys(); });
}

int LControlCollection::GetActiveIdx() const {
    const auto active =
        std::ranges::find_if(submorphs_, &LMorphControl2::IsActive,
                             [](const auto& track) -> const LMorphControl2& { return *track; });
    return active == submorphs_.end() ? -1 : static_cast<int>(active - submorphs_.begin());
}

void LControlCollection::SetActive(int i) {
    if (!GetMorphCtrl(i) && !IsPseudoTrack(i)) return;
    owner_.Invalidate();
    for (int t = 0; t < NumMorphCtrls(); ++t) submorphs_[t]->SetActive(t == i);
}

bool LControlCollection::IsActive(int i) const {
    return GetMorphCtrl(i) && submorphs_[i]->IsActive();
}

bool LControlCollection::IsEnabled(int i) const {
    return GetMorphCtrl(i) && submorphs_[i]->IsEnabled();
}

int LControlCollection::GetType(int i) const {
    return GetMorphCtrl(i) ? submorphs_[i]->GetType() : 0;
}

void LControlCollection::Enable(int i, bool on) {
    if (LMorphControl2* track = GetMorphCtrl(i)) track->Enable(on);
}

void LControlCollection::TargetDeleted(int index) {
    for (const auto& track : submorphs_)
        if (track->GetType() == LMorphControl2::kPhoneme) track->TargetDeleted(index);
}

void LControlCollection::AddTo(LSubdivMesh& delta, LFrame& frame) {
    const auto add = [&](int id, float weight) {
        // Keys at whose time it is leave their neighbours nothing.
        LMorphTarget* target = weight == 0 ? nullptr : owner_.GetMorph(id);
        if (target) target->ApplyToLevels(&delta, frame.levels, weight);
    };
    ForPlayed([&](const LMorphControl2& track) {
        // A key that is alone shows its target at any time.
        if (frame.interpolate && track.NumKeys() == 1 && owner_.GetMorph(track.Keys()[0].id))
            return add(track.Keys()[0].id, 1);
        ForShares(track, frame, add);
    });
}

void LControlCollection::Tag(int time, VertTagClallback& tag) const {
    const auto touch = [&](int id) {
        if (LMorphTarget* target = owner_.GetMorph(id)) target->Traverse(&tag);
    };
    ForPlayed([&](const LMorphControl2& track) {
        if (track.NumKeys() == 1) return touch(track.Keys()[0].id);
        const LTrackShares shares = track.SharesAt(time);
        for (const LTrackShares::Share& share : shares.All()) touch(share.id);
    });
}

}  // namespace VantrelSDK
