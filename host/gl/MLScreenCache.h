#pragma once

#include <maya/M3dView.h>
#include <maya/MDagPath.h>

#include <cstdint>
#include <vector>

#include "host/gl/ScreenRect.h"

namespace VantrelSDK {

/// The finished picture of a view, colour and depth, so that a stroke need only redraw what it
/// changed of it. One sample a pixel. All calls between beginGL and endGL.
class MLScreenCache {
  public:
    explicit MLScreenCache(const MDagPath& camera) : camPath(camera) {}

    bool IsThisCam(const M3dView& view) const;
    /// There is a picture.
    bool HasCache() const { return width_ > 0; }
    bool Fits(const M3dView& view) const;
    void Drop() { width_ = height_ = 0; }

    /// Takes the picture of the view as it is.
    void ReadCaches(const M3dView& view);
    /// Takes a rectangle that was drawn anew, puts the last picture in the place of all others, and
    /// both together are the picture then. False, with the view left as it is, where its size is
    /// another.
    bool Compose(const M3dView& view, const ScreenRect& drawn);

  private:
    struct Pixels {
        std::vector<std::uint32_t> color, depth;
    };
    static void Read(Pixels& to, const ScreenRect& rect);
    static void Write(const Pixels& from, const ScreenRect& rect);

    MDagPath camPath;
    int width_ = 0, height_ = 0;
    Pixels cache_, buffer_;
};

}  // namespace VantrelSDK
