#include "host/nodes/KelmoSelMessage.h"

#include <maya/MEventMessage.h>

#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

void KelmoSelMessage::RegisterCallbacks() {
    if (sessions++ > 0) return;
    callbackID = MEventMessage::addEventCallback("SelectionChanged", [](void*) { Update(); });
}

void KelmoSelMessage::DeregisterCallbacks() {
    if (sessions == 0 || --sessions > 0) return;
    MMessage::removeCallback(callbackID);
    callbackID = 0;
}

void KelmoSelMessage::Update() {
    for (const MObject& node : FindAllKelmoNodesByComponent())
        if (MLNode* found = MLNode::FromObject(node)) found->UpdateComponentSelection();
}

}  // namespace VantrelSDK
