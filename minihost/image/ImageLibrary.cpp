#include "minihost/image/ImageLibrary.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>

#include <exception>
#include <string>

namespace {

std::string g_error;

/// Not multiplied by alpha, nor divided.
constexpr char kColorsAsTheyAre[] = "oiio:UnassociatedAlpha";

/// Runs `act`, which answers why it failed.
template <class Act>
const char* Told(const Act& act) {
    try {
        g_error = act();
    } catch (const std::exception& failure) {
        g_error = failure.what();
    }
    return g_error.empty() ? nullptr : g_error.c_str();
}

std::string Or(const std::string& reason, const char* otherwise) {
    return reason.empty() ? otherwise : reason;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const char* minihost_write_image(
    const char* path, int width, int height, int channels, const unsigned char* pixels) {
    return Told([&]() -> std::string {
        const auto out = OIIO::ImageOutput::create(path);
        if (!out) return Or(OIIO::geterror(), "no such image format");
        OIIO::ImageSpec spec(width, height, channels, OIIO::TypeDesc::UINT8);
        spec.attribute(kColorsAsTheyAre, 1);
        if (!out->open(path, spec) || !out->write_image(OIIO::TypeDesc::UINT8, pixels) ||
            !out->close())
            return Or(out->geterror(), "can't be written");
        return {};
    });
}

extern "C" __attribute__((visibility("default"))) const char* minihost_image_size(const char* path,
                                                                                  int* width,
                                                                                  int* height) {
    return Told([&]() -> std::string {
        const auto in = OIIO::ImageInput::open(path);
        if (!in) return Or(OIIO::geterror(), "can't be read as an image");
        *width = in->spec().width;
        *height = in->spec().height;
        return {};
    });
}

extern "C" __attribute__((visibility("default"))) const char* minihost_read_image(
    const char* path, int width, int height, int channels, unsigned char* pixels) {
    return Told([&]() -> std::string {
        OIIO::ImageSpec how;
        how.attribute(kColorsAsTheyAre, 1);
        OIIO::ImageBuf image(path, 0, 0, nullptr, &how);
        if (!image.read(0, 0, true, OIIO::TypeDesc::UINT8))
            return Or(image.geterror(), "can't be read as an image");
        if (image.spec().width != width || image.spec().height != height)
            return "has changed while it was read";
        const int have = image.nchannels();
        // Grey images fill all colours; without alpha a picture is opaque.
        int order[4];
        float values[4] = {0, 0, 0, 1};
        for (int c = 0; c < channels; ++c)
            order[c] = c == 3 ? (have == 4 ? 3 : have == 2 ? 1 : -1) : have >= 3 ? c : 0;
        const OIIO::ImageBuf shaped =
            OIIO::ImageBufAlgo::channels(image, channels, OIIO::cspan<int>(order, channels),
                                         OIIO::cspan<float>(values, channels), {}, false);
        if (!shaped.get_pixels(OIIO::ROI(0, width, 0, height, 0, 1, 0, channels),
                               OIIO::TypeDesc::UINT8, pixels))
            return Or(shaped.geterror(), "can't be read as an image");
        return {};
    });
}
