#pragma once

#include "maya/MMessage.h"

/// Calls at equal intervals, from the event loop.
class MTimerMessage : public MMessage {
  public:
    /// `period`: seconds. The callback gets the seconds since its last call and the clock's time of
    /// that call.
    static MCallbackId addTimerCallback(float period, MElapsedTimeFunction function,
                                        void* clientData = nullptr, MStatus* status = nullptr);
};
