#pragma once

#include <GL/glx.h>
#include <X11/Intrinsic.h>

#include <functional>
#include <memory>
#include <string>

#include "minihost/view/GLContext.h"

namespace minihost {

/// A connection to a display that can show OpenGL. One at a time.
class XSession {
  public:
    /// Null with the reason in `error`: no display, or one without OpenGL.
    static std::unique_ptr<XSession> Open(std::string& error);
    ~XSession();
    XSession(const XSession&) = delete;
    XSession& operator=(const XSession&) = delete;

    /// What is to be done when the connection breaks; the process ends with 1 after it.
    void SetLost(std::function<void(const std::string&)> lost) { lost_ = std::move(lost); }

    /// A context that draws into a window of `visual()`; calls go there and to frame buffers. Null
    /// with the reason in `error`. Must not outlive the session.
    std::unique_ptr<GLContext> MakeContext(unsigned long window, std::string& error);

    XtAppContext app() const { return app_; }
    Display* display() const { return display_; }
    const XVisualInfo& visual() const { return *visual_; }

  private:
    XSession() = default;
    static void Lost(Display* display, void* session);

    XtAppContext app_ = nullptr;
    Display* display_ = nullptr;
    GLXFBConfig config_ = nullptr;
    XVisualInfo* visual_ = nullptr;
    std::function<void(const std::string&)> lost_;
};

}  // namespace minihost
