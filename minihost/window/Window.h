#pragma once

#include <functional>
#include <memory>
#include <string>

#include "minihost/view/View.h"
#include "minihost/window/Surroundings.h"

namespace minihost {

/// A window with a view in it, and its event loop. The view's pointer is the tool's and the
/// camera's, see ViewPointer; all else is for the surroundings. The loop dispatches all that has
/// come before it draws, draws when something has changed, and sleeps when nothing happens.
class Window {
  public:
    struct Options {
        std::string title;
        int width = 1280, height = 800;
        std::string camera = "persp";
        /// A pixel of the view; below 0: 4, or one where software draws, which takes it long.
        int samples = -1;
    };
    /// What a frame took, in seconds.
    struct FrameTimes {
        /// How many events were dispatched before it, and how long that took.
        int events = 0;
        double dispatch = 0, view = 0, surroundings = 0, swap = 0;
        /// The view was drawn anew.
        bool drawn = false;
    };

    /// Shows a window. Null with the reason in `error`. The surroundings must outlive it.
    static std::unique_ptr<Window> Open(const Options& options, Surroundings& surroundings,
                                        std::string& error);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Runs until Close.
    void Run();
    void Close();
    /// For those who hold the loop for long: draws a frame, with the view's picture as it is, and
    /// hands to the surroundings what has come for them; the view's pointer is dropped meanwhile.
    void Breathe();

    View& view();
    /// What the view sees, see Views::LookThrough. Empty, or why not.
    std::string LookThrough(const std::string& camera);
    const std::string& camera() const;
    int samples() const;
    void SetSamples(int samples);
    /// The view is drawn anew in the next frame; the surroundings alone are.
    void Touch();
    void Redraw();
    /// The whole window as it is, drawn anew.
    Picture Read();
    void SetTitle(const std::string& title);
    int width() const;
    int height() const;
    /// The pointer is in a drag that began in the view.
    bool isDragging() const;

    /// Stages of frames are measured to their end, which holds up the driver.
    void Measure();
    /// Is told of each frame, when it is shown.
    std::function<void(const FrameTimes&)> onFrame;

  private:
    class Impl;
    explicit Window(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl_;
};

}  // namespace minihost
