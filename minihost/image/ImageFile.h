#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace minihost {

/// An image in memory: 8 bits a channel, rows from the top, without gaps.
struct Picture {
    int width = 0, height = 0, channels = 4;
    std::vector<std::uint8_t> pixels;

    size_t RowBytes() const { return static_cast<size_t>(width) * static_cast<size_t>(channels); }
};

/// No image of the host's is larger, in either direction.
inline constexpr int kMaxImageSize = 32768;

/// Writes a picture in the format that the file's ending names ("png", "jpg", "tif" ...), beside
/// the name and then into its place: a failure leaves what was there. Empty, or why not.
std::string WritePicture(const std::string& path, const Picture& picture);
/// Reads a picture of any format that is known; `channels` of them (1, 3 or 4), whatever the file
/// has. Empty, or why not.
std::string ReadPicture(const std::string& path, int channels, Picture& picture);

}  // namespace minihost
