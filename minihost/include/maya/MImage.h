#pragma once

#include <vector>

#include "maya/MObject.h"
#include "maya/MStatus.h"
#include "maya/MString.h"

/// An image in memory, 8 bits a channel; rows from the bottom, as OpenGL has them, without gaps.
class MImage {
  public:
    /// Of a channel.
    enum MPixelType { kUnknown, kByte, kFloat };

    /// `channels` 1, 3 or 4. kInvalidParameter for a size below 1 or above 32768.
    MStatus create(unsigned width, unsigned height, unsigned channels = 4);
    /// Four channels. kFailure where there is no such file, or none of an image; kNotImplemented
    /// for other pixels than bytes.
    MStatus readFromFile(const MString& path, MPixelType type = kByte);
    /// The same of the image that a file texture names; kFailure for other nodes.
    MStatus readFromTextureNode(const MObject& texture, MPixelType type = kByte);
    /// `format`: the ending of a name that has none; "xpm" too.
    MStatus writeToFile(const MString& path, const MString& format = "png") const;
    void release() { *this = MImage(); }

    MStatus getSize(unsigned& width, unsigned& height) const;
    unsigned channels() const { return channels_; }
    /// Bytes a pixel.
    unsigned depth() const { return channels_; }
    /// width * height * channels bytes; null in an empty image.
    unsigned char* pixels() { return pixels_.empty() ? nullptr : pixels_.data(); }
    const unsigned char* pixels() const { return pixels_.empty() ? nullptr : pixels_.data(); }
    /// Copies width * height pixels of four channels from `pixels` into the image, which takes
    /// their size.
    MStatus setPixels(unsigned char* pixels, unsigned width, unsigned height);
    /// Always kByte.
    MPixelType pixelType() const { return kByte; }
    /// Null: there are none.
    float* floatPixels() const { return nullptr; }
    MStatus verticalFlip();

  private:
    unsigned width_ = 0, height_ = 0, channels_ = 4;
    std::vector<unsigned char> pixels_;
};
