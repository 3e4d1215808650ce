#include "core/paint/PatternPixels.h"

#include <algorithm>
#include <cstddef>

namespace VantrelSDK {

namespace {

/// The pixels of a line of `size` that point i of `count` takes the mean of.
struct Window {
    int first, last;

    Window(int size, int i, int count) {
        const int half = size / (2 * count);
        const auto centre = static_cast<int>((size - 1LL) * i / (count - 1));
        first = std::max(centre - half, 0);
        last = std::min(centre + half, size - 1);
    }
    int Count() const { return last - first + 1; }
};

/// Of four channels over a window.
template <class Value, class Total>
void Add(const Value* pixels, int width, const Window& xs, const Window& ys, Total (&sums)[4]) {
    for (int y = ys.first; y <= ys.last; ++y) {
        const Value* pixel = pixels + (static_cast<size_t>(y) * width + xs.first) * 4;
        for (int x = xs.first; x <= xs.last; ++x, pixel += 4)
            for (int c = 0; c < 4; ++c) sums[c] += pixel[c];
    }
}

/// Also of what is no number.
int ToByte(double value) {
    return value >= 255 ? 255 : value > 0 ? static_cast<int>(value) : 0;
}

}  // namespace

float PatternPixels::Sample::Weight() const {
    constexpr float kWhole = 1.0f / 195075;  // three channels of 255 and an alpha of 255
    return static_cast<float>((r + g + b) * a) * kWhole;
}

PatternPixels::Sample PatternPixels::At(int x, int y, int columns, int rows) const {
    if (IsEmpty()) return {};
    const Window xs(width, x, columns), ys(height, y, rows);
    const auto count = static_cast<long long>(xs.Count()) * ys.Count();
    if (bytes) {
        long long sums[4] = {};
        Add(bytes, width, xs, ys, sums);
        return {static_cast<int>(sums[0] / count), static_cast<int>(sums[1] / count),
                static_cast<int>(sums[2] / count), static_cast<int>(sums[3] / count)};
    }
    double sums[4] = {};
    Add(floats, width, xs, ys, sums);
    const double scale = 255.0 / static_cast<double>(count);
    return {ToByte(sums[0] * scale), ToByte(sums[1] * scale), ToByte(sums[2] * scale),
            ToByte(sums[3] * scale)};
}

}  // namespace VantrelSDK
