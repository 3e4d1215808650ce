#pragma once

#include <maya/MObject.h>
#include <maya/MPlug.h>

namespace VantrelSDK {

class MLNode;

// The host's animation curves, by which a node's tracks are seen and edited: that of track i feeds
// element i of `subTracks`. Only the active track's keys are shown.

/// The element of a track.
MPlug TrackPlug(const MLNode& node, int track);
/// The curve that feeds it, made where there is none; it draws in cyan. Null where that fails.
MObject TrackCurve(MLNode& node, int track);
/// Takes all keys off the curves of all tracks, which keep theirs.
void hideAllTrackseys(MLNode& node);
/// Puts the keys of the active track on its curve.
void showActiveTrackKeys(MLNode& node);
/// Has each track follow its curve.
void RegisterTracks(MLNode& node);
/// A track was taken out: its curve is let go, and those of later tracks stay with them.
void DropTrackCurve(MLNode& node, int track);

}  // namespace VantrelSDK
