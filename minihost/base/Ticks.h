#pragma once

#include <cmath>

#include "maya/MTime.h"

namespace minihost {

/// Plugs hold times in whole ticks, of which every unit's whole numbers are whole: a frame that
/// goes in comes out as the same number, by whatever units it went.
inline constexpr double kTicksPerSecond = 141120000;

inline double ToTicks(const MTime& time) {
    return std::nearbyint(time.value() * (kTicksPerSecond / MTime::perSecond(time.unit())));
}
inline MTime FromTicks(double ticks, MTime::Unit unit = MTime::uiUnit()) {
    return MTime(ticks / (kTicksPerSecond / MTime::perSecond(unit)), unit);
}

}  // namespace minihost
