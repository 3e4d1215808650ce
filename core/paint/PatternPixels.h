#pragma once

#include <cstdint>

namespace VantrelSDK {

/// The pixels of a picture that patterns are made from: red, green, blue, alpha, without gaps, the
/// first row at the bottom. Borrowed; empty without any.
struct PatternPixels {
    int width = 0, height = 0;
    /// One of the two, of width * height * 4 values: bytes, or floats where 1 is white.
    const uint8_t* bytes = nullptr;
    const float* floats = nullptr;

    /// 0 to 255 a channel.
    struct Sample {
        int r = 0, g = 0, b = 0, a = 0;

        int Grey() const { return (r + g + b) / 3; }
        /// The brightness times the alpha, 0 to 1.
        float Weight() const;
    };

    bool IsEmpty() const { return width < 1 || height < 1 || (!bytes && !floats); }
    /// Point (x, y) of a grid of columns x rows points, from 2 a side on, that is laid over the
    /// picture from edge to edge: the mean, rounded down, of the pixels within half a cell.
    Sample At(int x, int y, int columns, int rows) const;
};

}  // namespace VantrelSDK
