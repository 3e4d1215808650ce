#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// What a view lets a brush reach: a picture of open and closed pixels, and how the view sees the
/// object.
struct ScreenMask {
    /// Of the view, in pixels, up to kMostSide. A row of the picture is one pixel shorter than the
    /// view, and there is one row fewer.
    int width = 0, height = 0;
    /// Object space to clip space, row by row, for points that are rows.
    std::array<double, 16> toClip{};
    /// Pixels, row by row from the bottom, in turn so many open and so many closed ones; none
    /// negative.
    std::vector<int> runs;

    static constexpr int kMostSide = 32768;

    bool operator==(const ScreenMask&) const = default;
    /// The pixels of the picture.
    int64_t NumPixels() const;
    /// False, with the reason, unless the runs are the picture's.
    bool Check(std::string& error) const;
};

/// Looks positions up in a mask.
class ScreenMaskReader {
  public:
    ScreenMaskReader() = default;
    explicit ScreenMaskReader(const ScreenMask& mask);

    /// 1 where the view shows a position of object space in an open pixel; 0 in a closed one and
    /// out of the view. Callable by workers.
    float WeightAt(const LPoint3& p) const;

  private:
    int width_ = 0, height_ = 0;
    std::array<double, 16> toClip_{};
    /// The pixel behind each run.
    std::vector<int64_t> ends_;
};

/// The runs of a picture, whose closed pixels are not 0.
std::vector<int> RunsOf(std::span<const uint8_t> closed);

}  // namespace VantrelSDK
