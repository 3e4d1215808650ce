#include "minihost/anim/Playback.h"

#include <algorithm>
#include <cmath>

#include "minihost/base/Ticks.h"
#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

double Frame(double number = 1) {
    return ToTicks(MTime(number));
}

}  // namespace

NodePtr TimeNode(const Scene& scene) {
    const NodePtr node = scene.Find("time1");
    return node && node->apiType() == MFn::kTime ? node : nullptr;
}

void Playback::Reset() {
    MTime::setUIUnit(MTime::kFilm);
    Stop();
    mode = Mode::Continuous;
    speed = 0;
    autoKey = false;
    min_ = Frame(1);
    max_ = Frame(24);
    SetTime(min_);
}

double Playback::time() const {
    const NodePtr node = TimeNode(scene_);
    return node ? NumberOf(Pull(*node->FindSlot("outTime"))) : 0;
}

void Playback::SetTime(double ticks) {
    const NodePtr node = TimeNode(scene_);
    if (!node || !std::isfinite(ticks)) return;
    Write(*node->FindSlot("outTime"), std::nearbyint(ticks));
    scene_.listeners().Tell({"Event", "timeChanged"});
}

void Playback::SetMinTime(double ticks) {
    if (!std::isfinite(ticks)) return;
    min_ = ticks;
    max_ = std::max(max_, min_);
}

void Playback::SetMaxTime(double ticks) {
    if (!std::isfinite(ticks)) return;
    max_ = ticks;
    min_ = std::min(min_, max_);
}

void Playback::Play(bool forward) {
    direction_ = forward ? 1 : -1;
    due_ = -1;
    scene_.listeners().Tell({"Event", "playingBack"});
}

void Playback::Stop() {
    if (direction_ == 0) return;
    direction_ = 0;
    scene_.listeners().Tell({"Event", "playingBack"});
}

void Playback::Turn(double now) {
    if (!isPlaying()) return;
    if (speed > 0) {
        if (due_ < 0) due_ = now;
        if (now < due_) return;
        due_ = std::max(due_ + 1 / (MTime::perSecond(MTime::uiUnit()) * speed), now);
    }
    Step();
}

void Playback::Step() {
    const double next = time() + direction_ * Frame();
    if (next >= min_ && next <= max_) return SetTime(next);
    if (mode == Mode::Once) return Stop();
    SetTime(direction_ > 0 ? min_ : max_);
}

}  // namespace minihost
