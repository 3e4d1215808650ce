#pragma once

// What stands between libminihost and libminihost_image. The image library behind it takes longer
// to load than a short script to run, so it is loaded when the first image is read or written.

extern "C" {

/// `pixels`: rows from the top. Null when it went well; else why not, valid until the next call.
using MinihostWriteImage = const char* (*)(const char* path, int width, int height, int channels,
                                           const unsigned char* pixels);
/// Two steps: `width` and `height` of the file; then its pixels into `pixels`, which has room for
/// width * height * channels.
using MinihostImageSize = const char* (*)(const char* path, int* width, int* height);
using MinihostReadImage = const char* (*)(const char* path, int width, int height, int channels,
                                          unsigned char* pixels);
}
