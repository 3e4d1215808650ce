#pragma once

#include <maya/M3dView.h>
#include <maya/MDagPath.h>

#include "host/gl/ScreenRect.h"

namespace VantrelSDK {

/// The finished picture of a view, colour and depth, so that a stroke need only redraw what it
/// changed of it. It stays where the driver draws: no pixel is read back. One sample a pixel. All
/// calls but letting go of it between beginGL and endGL.
class MLScreenCache {
  public:
    explicit MLScreenCache(const MDagPath& camera) : camPath(camera) {}
    ~MLScreenCache();
    MLScreenCache(MLScreenCache&& other) noexcept { *this = std::move(other); }
    MLScreenCache& operator=(MLScreenCache&& other) noexcept;

    bool IsThisCam(const M3dView& view) const;
    /// The camera is still there.
    bool IsOfScene() const { return camPath.isValid(); }
    /// There is a picture.
    bool HasCache() const { return valid_; }
    /// There is one of this size, seen through the same matrix.
    bool Shows(const M3dView& view, const MMatrix& toClip) const;
    void Drop() { valid_ = false; }
    /// The step of the surface that the picture shows, as its display cache counts.
    unsigned step() const { return step_; }

    /// Takes the picture of the view as it is. Where the driver can't keep it there is none.
    void ReadCaches(const M3dView& view, const MMatrix& toClip, unsigned step);
    /// Takes a rectangle that was drawn anew, puts the last picture in the place of all else, and
    /// both together are the picture then. False, with the view left as it is, where its size is
    /// another, which is told, or the driver refuses.
    bool Compose(const M3dView& view, const ScreenRect& drawn, unsigned step);

  private:
    bool Fits(const M3dView& view) const;
    bool Resize(int width, int height);
    void LetGo();

    MDagPath camPath;
    bool valid_ = false;
    MMatrix toClip_;
    unsigned step_ = 0;
    int width_ = 0, height_ = 0;
    unsigned frame_ = 0, color_ = 0, depth_ = 0;
};

}  // namespace VantrelSDK
