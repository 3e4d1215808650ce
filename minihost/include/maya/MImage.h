#pragma once

#include <vector>

#include "maya/MStatus.h"
#include "maya/MString.h"

/// An image in memory, 8 bits a channel; rows from the bottom, as OpenGL has them, without gaps.
class MImage {
  public:
    /// `channels` 1, 3 or 4. kInvalidParameter for a size below 1 or above 32768.
    MStatus create(unsigned width, unsigned height, unsigned channels = 4);
    /// Four channels. kFailure where there is no such file, or none of an image.
    MStatus readFromFile(const MString& path);
    /// `format`: the ending of a name that has none.
    MStatus writeToFile(const MString& path, const MString& format = "png") const;
    void release() { *this = MImage(); }

    MStatus getSize(unsigned& width, unsigned& height) const;
    unsigned channels() const { return channels_; }
    /// width * height * channels bytes; null in an empty image.
    unsigned char* pixels() { return pixels_.empty() ? nullptr : pixels_.data(); }
    const unsigned char* pixels() const { return pixels_.empty() ? nullptr : pixels_.data(); }
    MStatus verticalFlip();

  private:
    unsigned width_ = 0, height_ = 0, channels_ = 4;
    std::vector<unsigned char> pixels_;
};
