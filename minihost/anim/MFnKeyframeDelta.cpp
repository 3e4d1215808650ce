#include "maya/MFnKeyframeDelta.h"

#include "maya/MDoubleArray.h"
#include "maya/MFnKeyframeDeltaAddRemove.h"
#include "maya/MFnKeyframeDeltaBlockAddRemove.h"
#include "maya/MFnKeyframeDeltaBreakdown.h"
#include "maya/MFnKeyframeDeltaMove.h"
#include "maya/MFnKeyframeDeltaScale.h"
#include "maya/MTimeArray.h"
#include "minihost/anim/KeyframeDelta.h"
#include "minihost/api/Status.h"
#include "minihost/base/Ticks.h"

using minihost::FromTicks;
using minihost::KeyframeDelta;
using minihost::Tell;

const KeyframeDelta* MFnKeyframeDelta::Get(MStatus* status) const {
    const auto* delta = object_.as<KeyframeDelta>();
    Tell(status, delta ? MS::kSuccess : MS::kInvalidParameter);
    return delta;
}

void MFnKeyframeDelta::Attach(const MObject& delta, MStatus* status) {
    object_ = hasObj(delta) ? delta : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MObject MFnKeyframeDelta::paramCurve(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? MObject(delta->curve) : MObject();
}
unsigned MFnKeyframeDelta::keyIndex(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? static_cast<unsigned>(delta->index) : 0;
}

MTime MFnKeyframeDeltaMove::previousTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->before.time) : MTime();
}
MTime MFnKeyframeDeltaMove::currentTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->after.time) : MTime();
}
double MFnKeyframeDeltaMove::previousValue(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? delta->before.value : 0;
}
double MFnKeyframeDeltaMove::currentValue(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? delta->after.value : 0;
}
unsigned MFnKeyframeDeltaMove::previousIndex(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? static_cast<unsigned>(delta->indexBefore) : 0;
}

MFnKeyframeDeltaAddRemove::DeltaType MFnKeyframeDeltaAddRemove::deltaType(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? static_cast<DeltaType>(delta->change) : kAdded;
}
MTime MFnKeyframeDeltaAddRemove::time(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->Subject().time) : MTime();
}
double MFnKeyframeDeltaAddRemove::value(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? delta->Subject().value : 0;
}

MFnKeyframeDeltaBlockAddRemove::DeltaType MFnKeyframeDeltaBlockAddRemove::deltaType(
    MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? static_cast<DeltaType>(delta->change) : kAdded;
}
unsigned MFnKeyframeDeltaBlockAddRemove::numKeys(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? static_cast<unsigned>(delta->block.size()) : 0;
}
MTime MFnKeyframeDeltaBlockAddRemove::startTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->block.front().time) : MTime();
}
MTime MFnKeyframeDeltaBlockAddRemove::endTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->block.back().time) : MTime();
}
MStatus MFnKeyframeDeltaBlockAddRemove::getTimes(MTimeArray& times) const {
    MStatus status;
    times.clear();
    if (const auto* delta = Get(&status))
        for (const auto& key : delta->block) times.append(FromTicks(key.time));
    return status;
}
MStatus MFnKeyframeDeltaBlockAddRemove::getValues(MDoubleArray& values) const {
    MStatus status;
    values.clear();
    if (const auto* delta = Get(&status))
        for (const auto& key : delta->block) values.append(key.value);
    return status;
}

MTime MFnKeyframeDeltaScale::previousStartTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->startBefore) : MTime();
}
MTime MFnKeyframeDeltaScale::previousEndTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->endBefore) : MTime();
}
MTime MFnKeyframeDeltaScale::currentStartTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->startAfter) : MTime();
}
MTime MFnKeyframeDeltaScale::currentEndTime(MStatus* status) const {
    const auto* delta = Get(status);
    return delta ? FromTicks(delta->endAfter) : MTime();
}

bool MFnKeyframeDeltaBreakdown::wasBreakdown(MStatus* status) const {
    const auto* delta = Get(status);
    return delta && delta->before.breakdown;
}
bool MFnKeyframeDeltaBreakdown::isBreakdown(MStatus* status) const {
    const auto* delta = Get(status);
    return delta && delta->after.breakdown;
}
