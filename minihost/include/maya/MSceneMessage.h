#pragma once

#include "maya/MMessage.h"

/// Before and after what is done with scenes as a whole.
class MSceneMessage : public MMessage {
  public:
    enum Message {
        kSceneUpdate = 0,
        kBeforeNew,
        kAfterNew,
        kBeforeImport,
        kAfterImport,
        kBeforeOpen,
        kAfterOpen,
        kBeforeExport,
        kAfterExport,
        kBeforeSave,
        kAfterSave,
        kBeforeReference,
        kAfterReference,
        kMayaInitialized = 19,
        kMayaExiting = 20,
        kBeforeSoftwareRender = 21,
        kAfterSoftwareRender = 22,
        kBeforeSoftwareFrameRender = 23,
        kAfterSoftwareFrameRender = 24,
    };

    /// 0 and a failure for a null function.
    static MCallbackId addCallback(Message message, MBasicFunction function,
                                   void* clientData = nullptr, MStatus* status = nullptr);
};
