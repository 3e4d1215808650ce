#pragma once

#include "maya/MMessage.h"
#include "maya/MString.h"

class MStringArray;

/// When something of a name happens: "SelectionChanged", "ToolChanged", "timeChanged", "idle",
/// "Undo", "Redo", "NameChanged".
class MEventMessage : public MMessage {
  public:
    static MCallbackId addEventCallback(const MString& event, MBasicFunction function,
                                        void* clientData = nullptr, MStatus* status = nullptr);
    static MStatus getEventNames(MStringArray& names);
};
