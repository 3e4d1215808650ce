#include "host/nodes/KelmoMorphControl2.h"

#include <maya/MAnimMessage.h>
#include <maya/MDoubleArray.h>
#include <maya/MFnAnimCurve.h>
#include <maya/MFnKeyframeDeltaAddRemove.h>
#include <maya/MFnKeyframeDeltaBlockAddRemove.h>
#include <maya/MFnKeyframeDeltaMove.h>
#include <maya/MGlobal.h>
#include <maya/MTimeArray.h>

#include "host/ml/MLMorphKey.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

constexpr char kClass[] = "KelmoMorphControl2: ";
constexpr char kNoKey[] = "can not find key at specified time.";

void Tell(const char* text) {
    MGlobal::displayError(MString(kClass) + text);
}

/// False, with the failure told.
bool Read(const MStatus& status, const char* failure) {
    if (!status) Tell(failure);
    return status;
}

float Seconds(const MTime& time) {
    return static_cast<float>(time.as(MTime::kSeconds));
}

/// A curve's value as a target.
int TargetOf(double value) {
    return std::isnan(value)
               ? LMorphKey::kNeutral
               : static_cast<int>(std::clamp(value, double{INT_MIN}, double{INT_MAX}));
}

/// The key that a time of the curve means: one tick off comes of the way through seconds.
int KeyAt(const LMorphControl2& track, const MTime& time) {
    const int key = track.GetPtrIndex(track.GetKeyByTime(TicksUp(Seconds(time)), 1));
    if (key < 0) Tell(kNoKey);
    return key;
}

}  // namespace

void KelmoMorphControl2::RegisterKeysCallback(const MPlug& plug) {
    UnRegisterKeysCallback();
    MStatus status;
    const MFnAnimCurve attached(plug, &status);
    MObject curve = attached.object();
    if (status)
        cbkid = MAnimMessage::addAnimKeyframeEditedCallback(curve, animMsgCallback, this, &status);
    Read(status, "can not register MAnimMessage callback.");
}

void KelmoMorphControl2::UnRegisterKeysCallback() {
    if (cbkid == 0) return;
    MMessage::removeCallback(cbkid);
    MAnimMessage::flushAnimKeyframeEditedCallbacks();
    cbkid = 0;
}

void KelmoMorphControl2::animMsgCallback(MObject& node, MObjectArray& editedKeys,
                                         void* clientData) {
    if (node.isNull()) MGlobal::displayWarning("null node");
    if (!clientData) return Tell("NULL ptr to client data passed.");
    auto* track = static_cast<KelmoMorphControl2*>(clientData);
    for (unsigned i = 0; i < editedKeys.length(); ++i) track->Follow(editedKeys[i]);
    if (auto* owner = static_cast<MLNode*>(track->GetLNode())) owner->TracksChanged();
}

void KelmoMorphControl2::Follow(const MObject& edit) {
    if (edit.hasFn(MFn::kKeyframeDeltaMove))
        KeyMoved(edit);
    else if (edit.hasFn(MFn::kKeyframeDeltaScale))
        MGlobal::displayInfo(MString(kClass) + "key scale is not supported.");
    else if (edit.hasFn(MFn::kKeyframeDeltaBreakdown))
        MGlobal::displayInfo(MString(kClass) + "key breakdown is not supported.");
    else if (edit.hasFn(MFn::kKeyframeDeltaAddRemove))
        KeyAddedOrRemoved(edit);
    else if (edit.hasFn(MFn::kKeyframeDeltaBlockAddRemove))
        BlockAddedOrRemoved(edit);
}

void KelmoMorphControl2::KeyMoved(const MObject& edit) {
    const MFnKeyframeDeltaMove move(edit);
    MStatus status;
    const MTime from = move.previousTime(&status);
    if (!Read(status, "can not grab prewious key time.")) return;
    const MTime to = move.currentTime(&status);
    if (!Read(status, "can not grab current key time.")) return;
    auto key = RemoveKeyByIndex(KeyAt(*this, from));
    if (!key) return;
    key->time = TicksUp(Seconds(to));
    AddKey(*key);
}

void KelmoMorphControl2::KeyAddedOrRemoved(const MObject& edit) {
    using Delta = MFnKeyframeDeltaAddRemove;
    const Delta change(edit);
    MStatus status;
    const Delta::DeltaType type = change.deltaType(&status);
    if (!Read(status, "can not get delta type.")) return;
    if (type == Delta::kAdded) {
        const MTime time = change.time(&status);
        if (!Read(status, "can not get the time key added.")) return;
        const double value = change.value(&status);
        if (!Read(status, "can not get the value of key added.")) return;
        AddKey(MLMorphKey(Seconds(time), TargetOf(value)));
    } else if (type == Delta::kRemoved) {
        const MTime time = change.time(&status);
        if (!Read(status, "can not get the time key deleted.")) return;
        RemoveKeyByIndex(KeyAt(*this, time));
    }
}

void KelmoMorphControl2::BlockAddedOrRemoved(const MObject& edit) {
    using Delta = MFnKeyframeDeltaBlockAddRemove;
    const Delta block(edit);
    MStatus status;
    const Delta::DeltaType type = block.deltaType(&status);
    if (!Read(status, "can not get delta type.")) return;
    if (type == Delta::kAdded) {
        const unsigned count = block.numKeys(&status);
        if (!Read(status, "can not get number of keys.")) return;
        MTimeArray times;
        if (!Read(block.getTimes(times), "can not get time array.")) return;
        MDoubleArray values;
        if (!Read(block.getValues(values), "can not get value array.")) return;
        for (unsigned i = 0; i < std::min({count, times.length(), values.length()}); ++i)
            AddKey(MLMorphKey(Seconds(times[i]), TargetOf(values[i])));
    } else if (type == Delta::kRemoved) {
        const MTime start = block.startTime(&status);
        if (!Read(status, "can not get start time.")) return;
        const MTime end = block.endTime(&status);
        if (!Read(status, "can not get end time.")) return;
        RemoveKeysInInterval(TicksCut(Seconds(start)), TicksCut(Seconds(end)));
    }
}

}  // namespace VantrelSDK
