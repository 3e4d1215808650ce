#pragma once

#include <string>

#include "minihost/image/ImageFile.h"

namespace minihost {

/// Pixels to draw into without a window: colour, depth and stencil, with several samples a pixel
/// where that is asked for. All calls need a current context, the destructor too.
class FrameBuffer {
  public:
    FrameBuffer() = default;
    ~FrameBuffer();
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    /// Makes it of a size in pixels, at least 1 x 1; nothing where it has that already. `samples`
    /// 0: one, unresolved, which may be read back; more than the driver has become what it has.
    /// Empty, or why not, and then there is none.
    std::string Resize(int width, int height, int samples);
    /// Drawing goes here, all of it.
    void Bind() const;
    /// What was drawn, the samples of a pixel averaged; opaque.
    Picture Read() const;
    /// Puts that into the context's window, with its lower left corner in a place there. Drawing
    /// goes to the window from then on.
    void Show(int x, int y) const;

    int width() const { return width_; }
    int height() const { return height_; }

  private:
    /// Averages the samples; the name of the frame buffer that has them.
    unsigned Resolve() const;

    struct Target {
        unsigned frame = 0, color = 0, depth = 0;
    };

    static bool Make(Target& target, int width, int height, int samples);
    static void Free(Target& target);

    int width_ = 0, height_ = 0, samples_ = 0;
    /// The second is what the samples of the first are averaged into.
    Target drawn_, resolved_;
};

/// What is in the bound frame buffer, from its lower left corner; opaque.
Picture ReadPixels(int width, int height);

}  // namespace minihost
