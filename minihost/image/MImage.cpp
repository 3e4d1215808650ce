#include "maya/MImage.h"

#include <algorithm>
#include <filesystem>
#include <new>

#include "minihost/image/ImageFile.h"
#include "minihost/image/XpmFile.h"
#include "minihost/shade/FileTexture.h"

using minihost::Picture;

MStatus MImage::create(unsigned width, unsigned height, unsigned channels) {
    const auto fits = [](unsigned size) { return size >= 1 && size <= minihost::kMaxImageSize; };
    if (!fits(width) || !fits(height) || (channels != 1 && channels != 3 && channels != 4))
        return MS::kInvalidParameter;
    try {
        pixels_.assign(size_t{width} * height * channels, 0);
    } catch (const std::bad_alloc&) {
        release();
        return MS::kFailure;
    }
    width_ = width;
    height_ = height;
    channels_ = channels;
    return MS::kSuccess;
}

MStatus MImage::readFromFile(const MString& path, MPixelType type) {
    if (type != kByte) return MS::kNotImplemented;
    Picture picture;
    if (!minihost::ReadPicture(path.str(), 4, picture).empty()) return MS::kFailure;
    width_ = static_cast<unsigned>(picture.width);
    height_ = static_cast<unsigned>(picture.height);
    channels_ = 4;
    pixels_ = std::move(picture.pixels);
    return verticalFlip();
}

MStatus MImage::readFromTextureNode(const MObject& texture, MPixelType type) {
    auto* node = texture.as<minihost::Node>();
    if (!node || !node->type().IsA("file")) return MS::kFailure;
    const std::string path = minihost::ImagePathOf(*node);
    return path.empty() ? MS::kFailure : readFromFile(MString(path), type);
}

MStatus MImage::writeToFile(const MString& path, const MString& format) const {
    if (pixels_.empty()) return MS::kFailure;
    MImage upright = *this;
    upright.verticalFlip();
    const Picture picture{static_cast<int>(width_), static_cast<int>(height_),
                          static_cast<int>(channels_), std::move(upright.pixels_)};
    std::filesystem::path to(path.str());
    if (!to.has_extension()) to += "." + format.str();
    if (to.extension() == ".xpm")
        return minihost::WriteXpm(to, picture).empty() ? MS::kSuccess : MS::kFailure;
    return minihost::WritePicture(to, picture).empty() ? MS::kSuccess : MS::kFailure;
}

MStatus MImage::setPixels(unsigned char* pixels, unsigned width, unsigned height) {
    const MStatus made = create(width, height, 4);
    if (made) std::copy_n(pixels, pixels_.size(), pixels_.data());
    return made;
}

MStatus MImage::getSize(unsigned& width, unsigned& height) const {
    width = width_;
    height = height_;
    return pixels_.empty() ? MS::kFailure : MS::kSuccess;
}

MStatus MImage::verticalFlip() {
    const size_t row = size_t{width_} * channels_;
    for (unsigned y = 0; y < height_ / 2; ++y)
        std::swap_ranges(pixels_.begin() + static_cast<long>(y * row),
                         pixels_.begin() + static_cast<long>((y + 1) * row),
                         pixels_.begin() + static_cast<long>((height_ - 1 - y) * row));
    return pixels_.empty() ? MS::kFailure : MS::kSuccess;
}
