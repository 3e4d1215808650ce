#pragma once

#include "maya/MMessage.h"
#include "maya/MString.h"

/// When nodes come and go.
class MDGMessage : public MMessage {
  public:
    /// `nodeType`: nodes of this type alone, "dependNode" for all.
    static MCallbackId addNodeAddedCallback(MNodeFunction function,
                                            const MString& nodeType = "dependNode",
                                            void* clientData = nullptr, MStatus* status = nullptr);
    static MCallbackId addNodeRemovedCallback(MNodeFunction function,
                                              const MString& nodeType = "dependNode",
                                              void* clientData = nullptr,
                                              MStatus* status = nullptr);
};
