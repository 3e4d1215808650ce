#include "core/sculpt/ScreenMask.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace VantrelSDK {

int64_t ScreenMask::NumPixels() const {
    return int64_t{std::max(width - 1, 0)} * std::max(height - 1, 0);
}

bool ScreenMask::Check(std::string& error) const {
    int64_t sum = 0;
    for (const int run : runs) sum += run;
    if (sum == NumPixels()) return true;
    error = fmt::format("the runs of a mask of {} x {} must make up {} pixels, not {}", width,
                        height, NumPixels(), sum);
    return false;
}

ScreenMaskReader::ScreenMaskReader(const ScreenMask& mask)
    : width_(mask.width), height_(mask.height), toClip_(mask.toClip) {
    ends_.reserve(mask.runs.size());
    for (const int run : mask.runs) ends_.push_back((ends_.empty() ? 0 : ends_.back()) + run);
}

float ScreenMaskReader::WeightAt(const LPoint3& p) const {
    const auto clip = [&](size_t column) {
        return p.x * toClip_[column] + p.y * toClip_[4 + column] + p.z * toClip_[8 + column] +
               toClip_[12 + column];
    };
    const double w = clip(3);
    if (!(w > 0)) return 0;
    const double x = std::floor((clip(0) / w + 1) / 2 * width_),
                 y = std::floor((clip(1) / w + 1) / 2 * height_);
    if (!(x >= 0 && x < width_ && y >= 0 && y < height_)) return 0;
    // The last pixel of a row is the first of the next: rows are one shorter than the view.
    const int64_t pixel = static_cast<int64_t>(y) * (width_ - 1) + static_cast<int64_t>(x);
    const auto run = std::upper_bound(ends_.begin(), ends_.end(), pixel);
    if (run == ends_.end()) return 0;
    return (run - ends_.begin()) % 2 == 0 ? 1 : 0;
}

std::vector<int> RunsOf(std::span<const uint8_t> closed) {
    std::vector<int> runs;
    bool state = false;
    int run = 0;
    for (const uint8_t value : closed) {
        if ((value != 0) != state) {
            runs.push_back(run);
            run = 0;
            state = !state;
        }
        ++run;
    }
    if (run) runs.push_back(run);
    return runs;
}

}  // namespace VantrelSDK
