#pragma once

#include <string>
#include <vector>

#include "minihost/window/Window.h"

namespace kelmo {

/// What the frames of a session took, by stage.
class FrameStats {
  public:
    struct Stage {
        const char* name;
        /// In milliseconds.
        double median = 0, p95 = 0, last = 0;
        size_t count = 0;
    };

    /// What of a frame's events the module tells apart, in seconds an event; below 0 for none.
    struct EventTimes {
        double hit = -1, step = -1, recalculation = -1;
    };

    void Add(const minihost::Window::FrameTimes& times, const EventTimes& events);
    /// Over the last frames in which the view was drawn.
    std::vector<Stage> Stages() const;
    /// Writes them as JSON; empty, or why not.
    std::string Write(const std::string& path) const;

    bool shown = false;
    /// From the start of the program to its first frame, in seconds; 0 before.
    double start = 0;

  private:
    struct Frame : minihost::Window::FrameTimes, EventTimes {};

    static Stage Measure(const char* name, const std::vector<Frame>& frames, auto seconds);

    std::vector<Frame> frames_;
    size_t next_ = 0;
};

/// Seconds since the process was started.
double SecondsSinceStart();

}  // namespace kelmo
