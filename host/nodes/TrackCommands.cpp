#include <maya/MFnAnimCurve.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include "host/ml/InterfaceProcedures.h"
#include "host/ml/MLMorphKey.h"
#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/KelmoMorphControl2.h"
#include "host/nodes/NodeCommands.h"
#include "host/nodes/TrackCurves.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

/// What takes the place of a track, and the attribute that is on while it does.
constexpr std::pair<int, N::Member> kPseudoTracks[] = {
    {LControlCollection::kPosesTrack, &N::m_moPosesActive},
    {LControlCollection::kGroupsTrack, &N::m_moGroupsActive},
    {LControlCollection::kMixTrack, &N::m_moMixActive},
    {LControlCollection::kHostTrack, &N::m_moMayaActive},
};

}  // namespace

std::span<const NodeCommands::Row> NodeCommands::TrackRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {11, &C::KeyTarget},      {25, &C::JointsOn},      {26, &C::SetJointsOn},
        {27, &C::IsPhonemeTrack}, {35, &C::TrackCount},    {36, &C::TrackName},
        {37, &C::TrackType},      {38, &C::RenameTrack},   {39, &C::AddTrack},
        {40, &C::DeleteTrack},    {41, &C::ActivateTrack}, {42, &C::ActiveTrack},
        {43, &C::EnableTrack},    {44, &C::IsTrackOn},     {186, &C::KeyNeutral},
        {208, &C::HideKeys},      {209, &C::ShowKeys},
    };
    return rows;
}

/// Null, which is told, on a node that has no geometry yet.
LControlCollection* NodeCommands::Tracks() {
    HasGeometry();
    LControlCollection* tracks = node_.GetAnimControls();
    if (!tracks) Error("null animation controller collection.");
    return tracks;
}

/// The track of `param0`; null, which is told, for a wrong number.
LMorphControl2* NodeCommands::Track() {
    LControlCollection* tracks = Tracks();
    LMorphControl2* track = tracks ? tracks->GetMorphCtrl(Index()) : nullptr;
    if (tracks && !track) Error("there is no track with such index.");
    return track;
}

LMorphControl2* NodeCommands::TrackInUse() {
    LControlCollection* tracks = Tracks();
    LMorphControl2* active = tracks ? tracks->GetActive() : nullptr;
    if (tracks && !active) Error("no animation track is selected.");
    return active;
}

void NodeCommands::KeyTarget() {
    const LMorphTarget* target = Target();
    if (!target) return;
    if (!target->HasXYZ() && !target->HasRGBA())
        return MGlobal::displayWarning("Kelmo: Can not create keyframe for an empty target.");
    AddKey(Index(), true);
}

void NodeCommands::KeyNeutral() {
    const LMorphTarget* neutral = Neutral();
    if (!neutral) return;
    if (!neutral->HasXYZ() && !neutral->HasRGBA())
        return MGlobal::displayWarning(
            "Kelmo: Can not create keyframe for an empty neutral target.");
    AddKey(LMorphKey::kNeutral, false);
}

/// Adds a key to the active track, at the time of `param1`, and shows it on the track's curve. A
/// key that is there already stays.
void NodeCommands::AddKey(int target, bool phonemesOnly) {
    MGlobal::executeCommand("setToolTo selectSuperContext");
    const MTime time(double{Number()}, MTime::uiUnit());
    const auto seconds = static_cast<float>(time.as(MTime::kSeconds));
    if (!Tracks() || !HasPhonemeTrack()) return;
    LMorphControl2* track = TrackInUse();
    if (!track) return;
    if (phonemesOnly && track->GetType() != LMorphControl2::kPhoneme)
        return Error("Phoneme animation track should be selected to add the keyframe.");
    const LMorphKey* there = track->GetKeyByTime(TicksUp(seconds), 1);
    if (there)
        target = there->id;
    else
        track->AddKey(MLMorphKey(seconds, target));
    ShowNewKey(time, target);
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    const MObject node = node_.getThisMObject();
    if (!selected.hasItem(node)) MGlobal::executeCommand("select -addFirst " + NameOf(node));
    OutputChanged();
}

void NodeCommands::ShowNewKey(const MTime& time, int target) {
    const int active = node_.GetAnimControls()->GetActiveIdx();
    if (TrackPlug(node_, active).isNull()) return Error("can not find active track plug.");
    MStatus status;
    MFnAnimCurve curve(TrackCurve(node_, active), &status);
    if (!status) return Error("can not attach MFnAnimCurve function set to subtrack plug.");
    curve.addKey(time, target, MFnAnimCurve::kTangentGlobal, MFnAnimCurve::kTangentGlobal, nullptr,
                 &status);
    if (!status) Error("can not add key using MFnAnimCurve.");
}

/// There is a phoneme track: the first key makes one, which is then the active one.
bool NodeCommands::HasPhonemeTrack() {
    LControlCollection& tracks = *node_.GetAnimControls();
    for (int i = 0; i < tracks.NumMorphCtrls(); ++i)
        if (tracks.GetType(i) == LMorphControl2::kPhoneme) return true;
    const int made = NewTrack(LMorphControl2::kPhoneme);
    if (made < 0) return false;
    tracks.SetActive(made);
    RunIfKnown("KelmoUpdateTrackList");
    return true;
}

/// Its index; -1, which is told, when it can't be.
int NodeCommands::NewTrack(int type) {
    LControlCollection& tracks = *node_.GetAnimControls();
    const int made = tracks.AddMorphCtrl(tracks.createNewControl());
    tracks.GetMorphCtrl(made)->SetType(type);
    tracks.GetMorphCtrl(made)->InitName();
    if (node_.plug(&N::m_moSubTracks).setNumElements(static_cast<unsigned>(made) + 1)) return made;
    tracks.RemoveMorphCtrl(made);
    MGlobal::displayWarning("KelmoNode2: can not add animation tracks.");
    return -1;
}

void NodeCommands::JointsOn() {
    const LMorphControl2* track = TrackInUse();
    Answer(track && track->GetJointsOn() ? 1 : 0);
}

void NodeCommands::SetJointsOn() {
    if (LMorphControl2* track = TrackInUse()) track->SetJointsOn(Index() != 0);
}

void NodeCommands::IsPhonemeTrack() {
    const LControlCollection* tracks = Tracks();
    Answer(tracks && tracks->GetType(tracks->GetActiveIdx()) == LMorphControl2::kPhoneme ? 1 : 0);
}

void NodeCommands::TrackCount() {
    const LControlCollection* tracks = Tracks();
    Answer(tracks ? tracks->NumMorphCtrls() : -1);
}

void NodeCommands::TrackName() {
    const LMorphControl2* track = Track();
    Answer(track ? MString(track->GetName().c_str()) : MString("error"));
}

void NodeCommands::TrackType() {
    if (const LMorphControl2* track = Track()) Answer(track->GetType());
}

void NodeCommands::RenameTrack() {
    LMorphControl2* track = Track();
    if (!track) return;
    track->SetName(Text().str());
    RunIfKnown("KelmoUpdateTrackList");
}

void NodeCommands::AddTrack() {
    if (!Tracks()) return;
    const int made = NewTrack(Index());
    if (made < 0) return;
    TrackCurve(node_, made);
    RunIfKnown("KelmoUpdateTrackList");
}

void NodeCommands::DeleteTrack() {
    if (!Track()) return;
    const int index = Index();
    node_.GetAnimControls()->RemoveMorphCtrl(index);
    DropTrackCurve(node_, index);
    RunIfKnown("KelmoUpdateTrackList");
    OutputChanged();
}

void NodeCommands::ActivateTrack() {
    LControlCollection* tracks = Tracks();
    if (!tracks) return;
    const int index = Index();
    for (const auto& [pseudo, active] : kPseudoTracks)
        node_.plug(active).setValue(pseudo == index ? 1 : 0);
    if (!tracks->GetMorphCtrl(index) && !LControlCollection::IsPseudoTrack(index))
        return Error("there is no track with such index.");
    tracks->SetActive(index);
    HideKeys();
    ShowKeys();
}

void NodeCommands::ActiveTrack() {
    const LControlCollection* tracks = Tracks();
    int active = tracks ? tracks->GetActiveIdx() : -1;
    for (const auto& [pseudo, on] : kPseudoTracks)
        if (active < 0 && node_.plug(on).asInt() != 0) active = pseudo;
    Answer(active);
}

void NodeCommands::EnableTrack() {
    LMorphControl2* track = Track();
    if (!track) return;
    track->Enable(Number() != 0);
    OutputChanged();
}

void NodeCommands::IsTrackOn() {
    if (const LMorphControl2* track = Track()) Answer(track->IsEnabled() ? 1.0f : 0.0f);
}

void NodeCommands::HideKeys() {
    hideAllTrackseys(node_);
}

void NodeCommands::ShowKeys() {
    showActiveTrackKeys(node_);
}

}  // namespace VantrelSDK
