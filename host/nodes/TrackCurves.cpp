#include "host/nodes/TrackCurves.h"

#include <maya/MDGModifier.h>
#include <maya/MFnAnimCurve.h>
#include <maya/MGlobal.h>

#include "host/ml/MLMorphKey.h"
#include "host/ml/MLNode.h"
#include "host/nodes/KelmoMorphControl2.h"

namespace VantrelSDK {

namespace {

KelmoControlCollection* TracksOf(const MLNode& node) {
    return static_cast<KelmoControlCollection*>(node.GetAnimControls());
}

void DrawInCyan(const MObject& curve) {
    const MFnDependencyNode known(curve);
    if (MPlug plug = known.findPlug("useCurveColor"); !plug.isNull()) plug.setValue(true);
    for (const char* channel : {"curveColorB", "curveColorG"})
        if (MPlug plug = known.findPlug(channel); !plug.isNull()) plug.setValue(1.0);
}

}  // namespace

MPlug TrackPlug(const MLNode& node, int track) {
    return node.plug(&NodeAttributes::m_moSubTracks)
        .elementByLogicalIndex(static_cast<unsigned>(track));
}

MObject TrackCurve(MLNode& node, int track) {
    KelmoControlCollection* tracks = TracksOf(node);
    KelmoMorphControl2* shown = tracks ? tracks->GetTrack(track) : nullptr;
    if (!shown) return {};
    const MPlug plug = TrackPlug(node, track);
    if (const MFnAnimCurve there(plug); !there.object().isNull()) {
        shown->RegisterKeysCallback(plug);
        return there.object();
    }
    MFnAnimCurve made;
    const MObject curve = made.create(plug);
    if (!curve.isNull()) DrawInCyan(curve);
    return curve;
}

void hideAllTrackseys(MLNode& node) {
    MPlug all = node.plug(&NodeAttributes::m_moSubTracks);
    for (unsigned i = 0; i < all.numElements(); ++i) {
        MFnAnimCurve curve(all.elementByPhysicalIndex(i));
        for (unsigned key = curve.numKeys(); key-- > 0;) curve.remove(key);
    }
}

void showActiveTrackKeys(MLNode& node) {
    const KelmoControlCollection* tracks = TracksOf(node);
    const int active = tracks ? tracks->GetActiveIdx() : -1;
    if (active < 0) return;
    MFnAnimCurve curve(TrackCurve(node, active));
    for (const LMorphKey& key : tracks->GetActive()->Keys()) {
        MStatus status;
        curve.addKey(MTime(double{SecondsOf(key.time)}, MTime::kSeconds), key.id,
                     MFnAnimCurve::kTangentGlobal, MFnAnimCurve::kTangentGlobal, nullptr, &status);
        if (!status) node.Error("can not add key MFnAnimCurve\n");
    }
}

void RegisterTracks(MLNode& node) {
    const KelmoControlCollection* tracks = TracksOf(node);
    for (int i = 0; tracks && i < tracks->NumMorphCtrls(); ++i) {
        const MPlug plug = TrackPlug(node, i);
        if (plug.isNull())
            node.Error("can not get track plug.");
        else if (plug.isDestination())
            tracks->GetTrack(i)->RegisterKeysCallback(plug);
    }
}

void DropTrackCurve(MLNode& node, int track) {
    const MPlug all = node.plug(&NodeAttributes::m_moSubTracks);
    if (all.isNull())
        return MGlobal::displayError("KelmoTracksCmd: can not find sub tracks plug\n");
    const auto cut = [](const MPlug& source, const MPlug& plug) {
        MDGModifier edits;
        return edits.disconnect(source, plug) && edits.doIt();
    };
    const MPlug gone = TrackPlug(node, track);
    if (gone.isDestination()) {
        const MPlug source = gone.source();
        if (source.isNull())
            MGlobal::displayError("KelmoTracksCmd: can not get connected plug\n");
        else if (!cut(source, gone))
            MGlobal::displayError("KelmoTracksCmd: can not disconnect plug\n");
    }
    int count = 0;
    for (unsigned i = 0; i < all.numElements(); ++i)
        count = std::max(count, 1 + static_cast<int>(all.elementByPhysicalIndex(i).logicalIndex()));
    for (int i = track + 1; i < count; ++i) {
        const MPlug from = TrackPlug(node, i), to = TrackPlug(node, i - 1);
        if (from.isNull() || to.isNull()) {
            node.Error("can not get plug by phisical index.");
            continue;
        }
        if (!from.isDestination()) continue;
        const MPlug source = from.source();
        if (!cut(source, from)) {
            node.Error("can not disconnect anim node\n");
            continue;
        }
        MDGModifier edits;
        if (!edits.connect(source, to) || !edits.doIt())
            MGlobal::displayError("Node: can not connect anim node.");
    }
}

}  // namespace VantrelSDK
