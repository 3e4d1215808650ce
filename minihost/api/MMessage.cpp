#include "maya/MMessage.h"

#include "maya/MDGMessage.h"
#include "maya/MEventMessage.h"
#include "maya/MSceneMessage.h"
#include "maya/MStringArray.h"
#include "minihost/Host.h"
#include "minihost/api/Callbacks.h"
#include "minihost/api/Status.h"

using minihost::AddCallback;
using minihost::Host;

namespace minihost {

MCallbackId AddCallback(const Listeners::Topic& topic, const void* code,
                        Listeners::Callback callback, MStatus* status) {
    if (!Tell(status, code ? MS::kSuccess : MS::kInvalidParameter)) return 0;
    Host& host = Host::Get();
    return host.listeners.Add(topic, std::move(callback), host.modules.OwnerOf(code));
}

}  // namespace minihost

MStatus MMessage::removeCallback(MCallbackId id) {
    return Host::Get().listeners.Remove(id) ? MS::kSuccess : MS::kInvalidParameter;
}

MCallbackId MSceneMessage::addCallback(Message message, MBasicFunction function, void* clientData,
                                       MStatus* status) {
    return AddCallback(
        {"Scene", std::to_string(message)}, reinterpret_cast<const void*>(function),
        [function, clientData](const void*) { function(clientData); }, status);
}

MCallbackId MEventMessage::addEventCallback(const MString& event, MBasicFunction function,
                                            void* clientData, MStatus* status) {
    return AddCallback(
        {"Event", event.str()}, reinterpret_cast<const void*>(function),
        [function, clientData](const void*) { function(clientData); }, status);
}

MStatus MEventMessage::getEventNames(MStringArray& names) {
    names.clear();
    for (const char* name :
         {"SelectionChanged", "ToolChanged", "timeChanged", "idle", "Undo", "Redo", "NameChanged"})
        names.append(MString(name));
    return MS::kSuccess;
}

namespace {

MCallbackId NodeCallback(const char* topic, MMessage::MNodeFunction function,
                         const MString& nodeType, void* clientData, MStatus* status) {
    return AddCallback(
        {topic, nodeType == "dependNode" ? "" : nodeType.str()},
        reinterpret_cast<const void*>(function),
        [function, clientData](const void* node) {
            MObject object(*static_cast<const minihost::NodePtr*>(node));
            function(object, clientData);
        },
        status);
}

}  // namespace

MCallbackId MDGMessage::addNodeAddedCallback(MNodeFunction function, const MString& nodeType,
                                             void* clientData, MStatus* status) {
    return NodeCallback("NodeAdded", function, nodeType, clientData, status);
}

MCallbackId MDGMessage::addNodeRemovedCallback(MNodeFunction function, const MString& nodeType,
                                               void* clientData, MStatus* status) {
    return NodeCallback("NodeRemoved", function, nodeType, clientData, status);
}
