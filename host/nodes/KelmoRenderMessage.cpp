#include "host/nodes/KelmoRenderMessage.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MSceneMessage.h>

#include <utility>

#include "host/nodes/Finders.h"
#include "host/nodes/SceneNodes.h"

namespace VantrelSDK {

MStatus KelmoRenderMessage::RegisterRenderCallbacks() {
    MStatus status;
    kelmoPreRenderCallbackID = MSceneMessage::addCallback(MSceneMessage::kBeforeSoftwareRender,
                                                          KelmoPreRender, nullptr, &status);
    CHECK_MSTATUS_AND_RETURN_IT(status);
    kelmoPostRenderCallbackID = MSceneMessage::addCallback(MSceneMessage::kAfterSoftwareRender,
                                                           KelmoPostRender, nullptr, &status);
    return status;
}

void KelmoRenderMessage::DeregisterRenderCallbacks() {
    MMessage::removeCallback(kelmoPreRenderCallbackID);
    MMessage::removeCallback(kelmoPostRenderCallbackID);
}

void KelmoRenderMessage::CheckRendererMELs() {
    const MObject settings = FindNodeByName("defaultRenderGlobals");
    if (settings.isNull()) return;
    for (const auto& [name, call] :
         {std::pair{"preMel", "KelmoRender -preRender"}, {"postMel", "KelmoRender -postRender"}}) {
        MPlug plug = MFnDependencyNode(settings).findPlug(name);
        const MString known = plug.asString();
        if (plug.isNull() || known.indexW(call) >= 0) continue;
        plug.setValue(known.length() > 0 ? known + "; " + call : MString(call));
    }
}

void KelmoRenderMessage::KelmoPreRender(void*) {
    isRendering = true;
    SendToNodes(kKelmoNode2Id, 113, 100, "KelmoPreRender");
}

void KelmoRenderMessage::KelmoPreRenderFrame(void*) {
    SendToNodes(kKelmoNode2Id, 248, 100, "KelmoPreRenderFrame");
}

void KelmoRenderMessage::KelmoPostRender(void*) {
    isRendering = false;
    SendToNodes(kKelmoNode2Id, 114, 200, "KelmoPostRender");
}

}  // namespace VantrelSDK
