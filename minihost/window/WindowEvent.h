#pragma once

#include <string>

namespace minihost {

/// What a person did in a window.
struct WindowEvent {
    enum class Kind { Motion, Press, Release, Wheel, Leave, KeyDown, KeyUp, Focus, Unfocus };

    Kind kind = Kind::Motion;
    /// In pixels from the upper left corner of the window.
    int x = 0, y = 0;
    /// 1 left, 2 middle, 3 right.
    int button = 0;
    /// Steps, up and to the left above 0.
    float wheel = 0, wheelAcross = 0;
    /// The key as X numbers it (XK_a), and what it types, UTF-8.
    unsigned long key = 0;
    std::string text;
    bool shift = false, control = false, alt = false;
    /// The pointer is in the view.
    bool inView = false;
};

}  // namespace minihost
