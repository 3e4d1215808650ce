#include "host/nodes/KelmoMtlMessage.h"

#include <maya/MDGMessage.h>
#include <maya/MGlobal.h>

#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

void KelmoMtlMessage::RegisterCallbacks() {
    MStatus status;
    cID = MDGMessage::addNodeAddedCallback(Callback, "groupParts", nullptr, &status);
    if (!status) MGlobal::displayWarning("KelmoMtlMessage: can not register callback.");
}

void KelmoMtlMessage::DeregisterCallbacks() {
    MMessage::removeCallback(cID);
    cID = 0;
}

void KelmoMtlMessage::Callback(MObject&, void*) {
    MLNode::LoadPreferences();
    MObject node, shape;
    if (!LNode::prefRehashMtlBeforeRender || !FindCurrentKelmoNode(node, shape) ||
        !HasOutputGroupParts(node))
        return;
    needRehash = true;
    MGlobal::executeCommandOnIdle("kelmoRehasMaterials " + NameOf(node));
}

}  // namespace VantrelSDK
