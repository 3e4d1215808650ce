#pragma once

#include "maya/MMessage.h"

/// When the person edits keys.
class MAnimMessage : public MMessage {
  public:
    /// `curve`: the keys of this curve alone. The callback gets the curve and what was done, in
    /// order, as objects for the MFnKeyframeDelta classes.
    static MCallbackId addAnimKeyframeEditedCallback(MObject& curve, MNodeObjArray function,
                                                     void* clientData = nullptr,
                                                     MStatus* status = nullptr);
    /// Delivers what waits to be told. Edits are told as they are done, so nothing ever waits; the
    /// call is there for modules that make sure of it.
    static MStatus flushAnimKeyframeEditedCallbacks();
};
