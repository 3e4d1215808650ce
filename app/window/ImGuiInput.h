#pragma once

#include <deque>

#include "minihost/window/WindowEvent.h"

namespace kelmo {

/// Hands what happened in a window to Dear ImGui, which looks once a frame: presses and releases
/// that came between two frames are told one a frame, so that no click is lost.
class ImGuiInput {
  public:
    /// Once, for the current context.
    void Begin();
    void Tell(const minihost::WindowEvent& event) { events_.push_back(event); }
    /// Before a frame. True where some wait for the next.
    bool Feed();

  private:
    std::deque<minihost::WindowEvent> events_;
};

}  // namespace kelmo
