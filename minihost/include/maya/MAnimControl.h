#pragma once

#include "maya/MTime.h"

/// The scene's time, the range that is played, and playing.
class MAnimControl {
  public:
    static MTime currentTime();
    /// All that depends on time is stale when the call comes back.
    static MStatus setCurrentTime(const MTime& time);
    static MTime minTime();
    static MTime maxTime();
    static MStatus setMinTime(const MTime& time);
    static MStatus setMaxTime(const MTime& time);

    /// Starts and returns at once; the event loop shows the frames.
    static MStatus playForward();
    static MStatus playBackward();
    static MStatus stop();
    static bool isPlaying();

    /// Whether values that change are to become keys.
    static bool autoKeyMode();
    static MStatus setAutoKeyMode(bool on);
};
