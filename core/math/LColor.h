#pragma once

#include <algorithm>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A colour, 0 to 1 a channel; arithmetic doesn't clamp. 12 bytes, also in a stream.
struct LColor {
    float r = 0, g = 0, b = 0;

    static const LColor cWhite, cBlack;

    constexpr LColor() = default;
    constexpr LColor(float r_, float g_, float b_) : r(r_), g(g_), b(b_) {}
    constexpr explicit LColor(const LPoint3& p) : r(p.x), g(p.y), b(p.z) {}

    constexpr LColor operator+(const LColor& o) const { return {r + o.r, g + o.g, b + o.b}; }
    constexpr LColor operator-(const LColor& o) const { return {r - o.r, g - o.g, b - o.b}; }
    constexpr LColor& operator+=(const LColor& o) { return *this = *this + o; }
    constexpr LColor& operator-=(const LColor& o) { return *this = *this - o; }
    constexpr LColor operator*(float f) const { return {r * f, g * f, b * f}; }
    constexpr LColor& operator*=(float f) { return *this = *this * f; }
    constexpr LColor operator/(float f) const { return {r / f, g / f, b / f}; }
    constexpr LColor& operator/=(float f) { return *this = *this / f; }
    constexpr bool operator==(const LColor& o) const = default;

    /// Limits each channel to at most 1.
    constexpr void ClampMax() { *this = {std::min(r, 1.0f), std::min(g, 1.0f), std::min(b, 1.0f)}; }
    /// Limits each channel to at least 0.
    constexpr void ClampMin() { *this = {std::max(r, 0.0f), std::max(g, 0.0f), std::max(b, 0.0f)}; }
    constexpr void ClampMinMax() { ClampMin(), ClampMax(); }
    /// Each channel becomes 1 minus itself.
    constexpr void Invert() { *this = {1 - r, 1 - g, 1 - b}; }
    /// Each negative channel has its sign flipped.
    constexpr void MakePos() { *this = {r < 0 ? -r : r, g < 0 ? -g : g, b < 0 ? -b : b}; }
};

static_assert(sizeof(LColor) == 12);

inline constexpr LColor LColor::cWhite{1, 1, 1};
inline constexpr LColor LColor::cBlack{};

/// A colour with alpha, which takes part in all arithmetic. 16 bytes, also in a stream.
struct LAColor {
    float r = 0, g = 0, b = 0, a = 0;

    static const LAColor Black, White, Transp;

    constexpr LAColor() = default;
    constexpr LAColor(float r_, float g_, float b_, float a_) : r(r_), g(g_), b(b_), a(a_) {}

    constexpr LAColor operator+(const LAColor& o) const {
        return {r + o.r, g + o.g, b + o.b, a + o.a};
    }
    constexpr LAColor operator-(const LAColor& o) const {
        return {r - o.r, g - o.g, b - o.b, a - o.a};
    }
    constexpr LAColor& operator+=(const LAColor& o) { return *this = *this + o; }
    constexpr LAColor& operator-=(const LAColor& o) { return *this = *this - o; }
    constexpr LAColor operator*(float f) const { return {r * f, g * f, b * f, a * f}; }
    constexpr LAColor& operator*=(float f) { return *this = *this * f; }
    constexpr LAColor operator/(float f) const { return {r / f, g / f, b / f, a / f}; }
    constexpr LAColor& operator/=(float f) { return *this = *this / f; }
    constexpr bool operator==(const LAColor& o) const = default;

    /// Limits each channel and the alpha to at most 1.
    constexpr void ClampMax() {
        *this = {std::min(r, 1.0f), std::min(g, 1.0f), std::min(b, 1.0f), std::min(a, 1.0f)};
    }
    /// Limits each channel and the alpha to at least 0.
    constexpr void ClampMin() {
        *this = {std::max(r, 0.0f), std::max(g, 0.0f), std::max(b, 0.0f), std::max(a, 0.0f)};
    }
    constexpr void ClampMinMax() { ClampMin(), ClampMax(); }
    /// The mean of the three colour channels; the alpha takes no part.
    constexpr float Intensivity() const { return 0.33333334f * (r + g + b); }
};

static_assert(sizeof(LAColor) == 16);

inline constexpr LAColor LAColor::Black{};
inline constexpr LAColor LAColor::White{1, 1, 1, 1};
inline constexpr LAColor LAColor::Transp{0, 0, 0, 1};

}  // namespace VantrelSDK
