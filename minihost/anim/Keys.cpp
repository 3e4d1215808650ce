#include "minihost/anim/Keys.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace minihost {
namespace {

/// Value per tick from one key to another.
double Slope(const Key& a, const Key& b) {
    return (b.value - a.value) / (b.time - a.time);
}

/// The slope of a tangent at key i; `to`: the key on the tangent's side, which exists.
double SlopeOf(Tangent tangent, std::span<const Key> keys, size_t i, size_t to) {
    switch (tangent) {
        case Tangent::Linear:
            return Slope(keys[i], keys[to]);
        case Tangent::Spline:
            return Slope(keys[i == 0 ? 0 : i - 1], keys[i + 1 == keys.size() ? i : i + 1]);
        case Tangent::Flat:
        case Tangent::Step:
            break;
    }
    return 0;
}

/// A time brought between the first key and the last, by whole lengths of the curve.
double Wrapped(std::span<const Key> keys, double time) {
    const double length = keys.back().time - keys.front().time;
    const double past = std::fmod(time - keys.front().time, length);
    return keys.front().time + (past < 0 ? past + length : past);
}

}  // namespace

bool Key::operator==(const Key& other) const {
    const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
    return time == other.time && bits(value) == bits(other.value) && in == other.in &&
           out == other.out && breakdown == other.breakdown;
}

double ValueAt(std::span<const Key> keys, double time, Infinity before, Infinity after) {
    if (keys.empty()) return 0;
    const bool early = time<keys.front().time, late = time> keys.back().time;
    if ((early && before == Infinity::Cycle) || (late && after == Infinity::Cycle))
        if (keys.size() > 1 && std::isfinite(time)) time = Wrapped(keys, time);
    const auto next = static_cast<size_t>(FirstKeyFrom(keys, time));
    if (next == keys.size()) return keys.back().value;
    if (next == 0 || keys[next].time == time) return keys[next].value;

    const Key &a = keys[next - 1], &b = keys[next];
    if (a.out == Tangent::Step) return a.value;
    const double length = b.time - a.time, u = (time - a.time) / length;
    if (a.out == Tangent::Linear && b.in == Tangent::Linear)
        return a.value + (b.value - a.value) * u;
    const double leave = SlopeOf(a.out, keys, next - 1, next) * length;
    const double reach = SlopeOf(b.in, keys, next, next - 1) * length;
    const double rise = b.value - a.value;
    const double c2 = 3 * rise - 2 * leave - reach, c3 = leave + reach - 2 * rise;
    return a.value + u * (leave + u * (c2 + u * c3));
}

int FirstKeyFrom(std::span<const Key> keys, double time) {
    return static_cast<int>(std::ranges::lower_bound(keys, time, {}, &Key::time) - keys.begin());
}

int KeyAt(std::span<const Key> keys, double time) {
    const int at = FirstKeyFrom(keys, time);
    return static_cast<size_t>(at) < keys.size() && keys[static_cast<size_t>(at)].time == time ? at
                                                                                               : -1;
}

int ClosestKey(std::span<const Key> keys, double time) {
    if (keys.empty()) return -1;
    const auto next = static_cast<size_t>(FirstKeyFrom(keys, time));
    if (next == 0) return 0;
    if (next == keys.size()) return static_cast<int>(next) - 1;
    const bool earlier = time - keys[next - 1].time <= keys[next].time - time;
    return static_cast<int>(earlier ? next - 1 : next);
}

int PutKey(Keys& keys, const Key& key) {
    const int at = FirstKeyFrom(keys, key.time);
    if (KeyAt(keys, key.time) >= 0)
        keys[static_cast<size_t>(at)] = key;
    else
        keys.insert(keys.begin() + at, key);
    return at;
}

}  // namespace minihost
