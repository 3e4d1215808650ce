#include "maya/MTime.h"

#include "minihost/base/Ticks.h"

namespace {

MTime::Unit g_unit = MTime::kFilm;

}  // namespace

double MTime::perSecond(Unit unit) {
    switch (unit) {
        case kHours:
            return 1.0 / 3600;
        case kMinutes:
            return 1.0 / 60;
        case kMilliseconds:
            return 1000;
        case kGames:
            return 15;
        case kFilm:
            return 24;
        case kPALFrame:
            return 25;
        case kNTSCFrame:
            return 30;
        case kShowScan:
            return 48;
        case kPALField:
            return 50;
        case kNTSCField:
            return 60;
        case kInvalid:
        case kSeconds:
            break;
    }
    return 1;
}

double MTime::as(Unit unit) const {
    return unit == unit_ ? value_ : minihost::FromTicks(minihost::ToTicks(*this), unit).value_;
}

MTime::Unit MTime::uiUnit() {
    return g_unit;
}

MStatus MTime::setUIUnit(Unit unit) {
    if (unit < kHours || unit > kNTSCField) return MS::kInvalidParameter;
    g_unit = unit;
    return MS::kSuccess;
}
