#pragma once

#include <memory>
#include <string>

namespace minihost {

/// What makes OpenGL's calls go somewhere: a window's context, or one without a window. Frame
/// buffers belong to the views; what is drawn goes into theirs.
class GLContext {
  public:
    virtual ~GLContext() = default;

    /// Makes the calls of this thread go to this context.
    virtual bool MakeCurrent() = 0;
    /// Shows what was drawn into its window; nothing without one.
    virtual void Swap() {}

    /// A context that needs no display, compatibility profile, by EGL: on the first device that
    /// has one, else in software. Null with the reason in `error`.
    static std::unique_ptr<GLContext> MakeOffscreen(std::string& error);
};

}  // namespace minihost
