#include "maya/MAnimControl.h"

#include "minihost/Host.h"
#include "minihost/base/Ticks.h"

using minihost::FromTicks;
using minihost::ToTicks;

namespace {

minihost::Playback& Get() {
    return minihost::Host::Get().playback;
}

}  // namespace

MTime MAnimControl::currentTime() {
    return FromTicks(Get().time());
}
MStatus MAnimControl::setCurrentTime(const MTime& time) {
    Get().SetTime(ToTicks(time));
    return MS::kSuccess;
}
MTime MAnimControl::minTime() {
    return FromTicks(Get().minTime());
}
MTime MAnimControl::maxTime() {
    return FromTicks(Get().maxTime());
}
MStatus MAnimControl::setMinTime(const MTime& time) {
    Get().SetMinTime(ToTicks(time));
    return MS::kSuccess;
}
MStatus MAnimControl::setMaxTime(const MTime& time) {
    Get().SetMaxTime(ToTicks(time));
    return MS::kSuccess;
}
MStatus MAnimControl::playForward() {
    Get().Play(true);
    return MS::kSuccess;
}
MStatus MAnimControl::playBackward() {
    Get().Play(false);
    return MS::kSuccess;
}
MStatus MAnimControl::stop() {
    Get().Stop();
    return MS::kSuccess;
}
bool MAnimControl::isPlaying() {
    return Get().isPlaying();
}
bool MAnimControl::autoKeyMode() {
    return Get().autoKey;
}
MStatus MAnimControl::setAutoKeyMode(bool on) {
    Get().autoKey = on;
    return MS::kSuccess;
}
