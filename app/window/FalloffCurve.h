#pragma once

#include <span>
#include <string>
#include <vector>

namespace minihost {
class Node;
}

namespace kelmo {

/// How a brush acts from its centre (0) to its rim (1): a curve through points.
struct FalloffCurve {
    enum Kind { kStep, kLinear, kSmooth, kSpline };
    struct Point {
        float position = 0, value = 0;
        int kind = kLinear;
        bool operator==(const Point&) const = default;
    };

    /// That of a ramp attribute; a line from 1 to 0 where there is none.
    static FalloffCurve Of(minihost::Node& node, const char* attribute);
    /// "value,position,kind,..." as the sculpt tool takes it.
    std::string Text() const;
    float At(float position) const;
    /// Puts the points in order, within 0 to 1.
    void Tidy();
    bool operator==(const FalloffCurve&) const = default;

    std::vector<Point> points;
};

/// Curves to begin with.
struct FalloffPreset {
    const char* name;
    const char* tip;
    FalloffCurve curve;
};
std::span<const FalloffPreset> FalloffPresets();

}  // namespace kelmo
