#include "app/window/FalloffCurve.h"

#include <fmt/core.h>

#include <algorithm>

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"

namespace kelmo {

FalloffCurve FalloffCurve::Of(minihost::Node& node, const char* attribute) {
    FalloffCurve curve;
    if (minihost::Slot* ramp = node.FindSlot(attribute))
        for (const auto& entry : ramp->parts) {
            const auto number = [&entry](size_t part) {
                return NumberOf(minihost::Pull(*entry->parts[part]));
            };
            curve.points.push_back({static_cast<float>(number(0)), static_cast<float>(number(1)),
                                    static_cast<int>(number(2))});
        }
    if (curve.points.empty()) curve.points = {{0, 1, kLinear}, {1, 0, kLinear}};
    curve.Tidy();
    return curve;
}

void FalloffCurve::Tidy() {
    for (Point& point : points) {
        point.position = std::clamp(point.position, 0.f, 1.f);
        point.value = std::clamp(point.value, 0.f, 1.f);
    }
    std::ranges::stable_sort(points, {}, &Point::position);
}

std::string FalloffCurve::Text() const {
    std::string text;
    for (const Point& p : points)
        text += fmt::format("{}{},{},{}", text.empty() ? "" : ",", p.value, p.position, p.kind);
    return text;
}

float FalloffCurve::At(float position) const {
    const auto next = std::ranges::upper_bound(points, position, {}, &Point::position);
    if (next == points.begin()) return points.front().value;
    if (next == points.end()) return points.back().value;
    const Point &a = *(next - 1), &b = *next;
    const float width = b.position - a.position,
                t = width > 0 ? (position - a.position) / width : 1;
    if (a.kind == kStep) return a.value;
    if (a.kind == kLinear) return a.value + (b.value - a.value) * t;
    if (a.kind == kSmooth) return a.value + (b.value - a.value) * t * t * (3 - 2 * t);
    // Catmull and Rom, "A Class of Local Interpolating Splines"; ends are repeated.
    const float before = next - 1 == points.begin() ? a.value : (next - 2)->value,
                after = next + 1 == points.end() ? b.value : (next + 1)->value;
    return 0.5f * (2 * a.value + (b.value - before) * t +
                   (2 * before - 5 * a.value + 4 * b.value - after) * t * t +
                   (3 * a.value - before - 3 * b.value + after) * t * t * t);
}

std::span<const FalloffPreset> FalloffPresets() {
    constexpr int kSmooth = FalloffCurve::kSmooth, kSpline = FalloffCurve::kSpline,
                  kLinear = FalloffCurve::kLinear;
    static const FalloffPreset presets[] = {
        {"Soft", "Round in the middle, and gone at the rim.", {{{0, 1, kSmooth}, {1, 0, kSmooth}}}},
        {"Line", "Even from the centre to the rim.", {{{0, 1, kLinear}, {1, 0, kLinear}}}},
        {"Peak",
         "Sharp in the middle.",
         {{{0, 1, kSpline}, {0.25f, 0.35f, kSpline}, {0.6f, 0.08f, kSpline}, {1, 0, kSpline}}}},
        {"Flat",
         "Full nearly to the rim.",
         {{{0, 1, kSmooth}, {0.75f, 1, kSmooth}, {1, 0, kSmooth}}}},
    };
    return presets;
}

}  // namespace kelmo
