#pragma once

#include "maya/MStatus.h"
#include "maya/MTypes.h"

class MObject;
class MObjectArray;
class MTime;

/// Calls back when something happens, until the callback is removed. A callback may remove itself
/// and others. What a module leaves is removed when it is unloaded.
class MMessage {
  public:
    using MBasicFunction = void (*)(void* clientData);
    using MElapsedTimeFunction = void (*)(float elapsed, float last, void* clientData);
    using MNodeFunction = void (*)(MObject& node, void* clientData);
    using MNodeObjArray = void (*)(MObject& node, MObjectArray& objects, void* clientData);

    static MStatus removeCallback(MCallbackId id);
};
