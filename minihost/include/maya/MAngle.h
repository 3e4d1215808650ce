#pragma once

/// An angle; the host holds angles in radians and shows them in degrees.
class MAngle {
  public:
    enum Unit { kInvalid, kRadians, kDegrees };

    MAngle() = default;
    explicit MAngle(double value, Unit unit = kRadians)
        : radians_(unit == kDegrees ? value * kPerDegree : value) {}

    double asRadians() const { return radians_; }
    double asDegrees() const { return radians_ / kPerDegree; }

    static constexpr double kPerDegree = 3.14159265358979323846 / 180;

  private:
    double radians_ = 0;
};
