#pragma once

#include "maya/MStatus.h"

/// A moment or a length of time. Its number is held as given, with its unit beside it.
class MTime {
  public:
    enum Unit {
        kInvalid,
        kHours,
        kMinutes,
        kSeconds,
        kMilliseconds,
        kGames,
        kFilm,
        kPALFrame,
        kNTSCFrame,
        kShowScan,
        kPALField,
        kNTSCField,
    };

    MTime() : unit_(uiUnit()) {}
    explicit MTime(double value, Unit unit = uiUnit()) : value_(value), unit_(unit) {}

    Unit unit() const { return unit_; }
    double value() const { return value_; }
    /// The value in another unit.
    double as(Unit unit) const;
    MStatus setValue(double value) {
        value_ = value;
        return MS::kSuccess;
    }
    /// Changes the unit and leaves the value's number.
    MStatus setUnit(Unit unit) {
        unit_ = unit;
        return MS::kSuccess;
    }

    MTime operator+(const MTime& o) const { return MTime(value_ + o.as(unit_), unit_); }
    MTime operator-(const MTime& o) const { return MTime(value_ - o.as(unit_), unit_); }
    MTime operator+(double d) const { return MTime(value_ + d, unit_); }
    MTime operator-(double d) const { return MTime(value_ - d, unit_); }
    MTime operator*(double s) const { return MTime(value_ * s, unit_); }
    MTime& operator+=(const MTime& o) { return *this = *this + o; }
    MTime& operator-=(const MTime& o) { return *this = *this - o; }
    bool operator==(const MTime& o) const { return as(kSeconds) == o.as(kSeconds); }
    bool operator!=(const MTime& o) const { return !(*this == o); }
    bool operator<(const MTime& o) const { return as(kSeconds) < o.as(kSeconds); }
    bool operator>(const MTime& o) const { return o < *this; }
    bool operator<=(const MTime& o) const { return !(o < *this); }
    bool operator>=(const MTime& o) const { return !(*this < o); }

    /// The unit that the person works in, kFilm (24 frames a second) at the start.
    static Unit uiUnit();
    static MStatus setUIUnit(Unit unit);
    /// How many of the unit are in a second.
    static double perSecond(Unit unit);

  private:
    double value_ = 0;
    Unit unit_;
};
