#pragma once

#include "minihost/graph/Scene.h"

namespace minihost {

/// The node whose outTime is the scene's time; null where it is missing.
NodePtr TimeNode(const Scene& scene);

/// The moment that is shown, the range of time that is worked on, and playing. Times are in ticks;
/// the frame is the person's unit of time.
class Playback {
  public:
    explicit Playback(Scene& scene) : scene_(scene) {}

    /// What a new scene has: 24 frames a second, frames 1 to 24, at frame 1.
    void Reset();

    double time() const;
    /// Rounded to a whole tick, tells ("Event", "timeChanged"). A time that is not finite is left.
    void SetTime(double ticks);

    /// What is played, and beyond it what there is. Least before greatest; a bound that would come
    /// to stand on the wrong side of the other takes it along.
    double minTime() const { return min_; }
    double maxTime() const { return max_; }
    void SetMinTime(double ticks);
    void SetMaxTime(double ticks);

    enum class Mode { Once, Continuous };
    Mode mode = Mode::Continuous;
    /// Of real time; 0: every frame, one a turn of the event loop.
    double speed = 0;
    /// Whether a changed value of what has a curve is to become a key.
    bool autoKey = false;

    /// Starts playing, from here on; tells ("Event", "playingBack").
    void Play(bool forward = true);
    void Stop();
    bool isPlaying() const { return direction_ != 0; }
    /// A turn of the event loop at a time of its clock, in seconds: shows the next frame when it is
    /// due. Mode Once stops at the end of the range.
    void Turn(double now);

  private:
    void Step();

    Scene& scene_;
    double min_ = 0, max_ = 0;
    int direction_ = 0;
    /// When the next frame is due; below 0 at once.
    double due_ = -1;
};

}  // namespace minihost
