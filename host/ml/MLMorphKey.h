#pragma once

#include <algorithm>
#include <climits>
#include <cmath>

#include "core/anim/LMorphKey.h"

namespace VantrelSDK {

/// A time in single precision, as ticks that need not be whole; held to what a key can have.
inline double ExactTicks(float seconds) {
    const float ticks = static_cast<float>(LMorphKey::ticksPerSecond) * seconds;
    return std::isnan(ticks) ? 0 : std::clamp(double{ticks}, double{INT_MIN}, double{INT_MAX});
}
/// What keys are made with and looked up by: up to the next tick.
inline int TicksUp(float seconds) {
    return static_cast<int>(std::ceil(ExactTicks(seconds)));
}
/// What intervals and frames are told in.
inline int TicksCut(float seconds) {
    return static_cast<int>(ExactTicks(seconds));
}
inline float SecondsOf(int ticks) {
    return static_cast<float>(ticks) / static_cast<float>(LMorphKey::ticksPerSecond);
}

/// A key made at a time of the host's.
struct MLMorphKey : LMorphKey {
    MLMorphKey(float seconds, int target) { id = target, time = TicksUp(seconds); }
};

}  // namespace VantrelSDK
