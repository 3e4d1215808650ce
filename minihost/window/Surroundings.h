#pragma once

#include <string>

#include "minihost/window/WindowEvent.h"

namespace minihost {

/// A part of a window, in pixels from its upper left corner.
struct WindowPlace {
    int x = 0, y = 0, width = 1, height = 1;
    bool operator==(const WindowPlace&) const = default;
};

/// What stands around the view in a window, and over it.
class Surroundings {
  public:
    virtual ~Surroundings() = default;

    /// Where the view lies in a window of a size. At least 1 x 1, within the window.
    virtual WindowPlace ViewPlace(int width, int height) = 0;
    /// What happened outside the view, and keys everywhere. True: it is used, and nobody else gets
    /// it.
    virtual bool Handle(const WindowEvent& event) = 0;
    /// Whether all is for the surroundings now, as while they ask something: the view then takes no
    /// pointer.
    virtual bool TakesAll() = 0;
    /// Draws with OpenGL into the window, which has the view's picture in its place. True: draw
    /// again, there is more to come.
    virtual bool Draw(int width, int height) = 0;
    /// The person closes the window; it stays open until Window::Close.
    virtual void CloseAsked() = 0;
    /// The display is gone, and the process ends when this returns: keep what there is to be kept.
    /// Nothing may be drawn.
    virtual void DisplayLost(const std::string& message) = 0;
};

}  // namespace minihost
