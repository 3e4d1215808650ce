#include "host/nodes/KelmoIOCallbacks.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSceneMessage.h>

#include <array>

#include "host/commands/KelmoNewCmd.h"
#include "host/commands/ReplaceByND.h"
#include "host/nodes/Finders.h"
#include "host/nodes/SceneNodes.h"

namespace VantrelSDK {

namespace {

MCallbackId kelmoPostLoadCallbackID = 0, kelmoPostReferenceCallbackID = 0,
            kelmoPostImportCallbackID = 0, kelmoPreSaveCallbackID = 0, kelmoPostSaveCallbackID = 0,
            kelmoPostNewCallbackID = 0;

/// A change of time makes every node evaluate.
void EvaluateOnIdle() {
    MGlobal::executeCommandOnIdle("currentTime 1");
    MGlobal::executeCommandOnIdle("currentTime 0");
}

/// Scenes of older versions know nothing of what the mesh was before it was deformed.
void ConnectPreDeformedInputs() {
    for (const MObject& node : FindNodesByTypeId(MTypeId(kKelmoNode2Id))) {
        const MFnDependencyNode known(node);
        MDGModifier edits;
        if (known.findPlug("inputGeomPreDef").source().isNull() && ConnectPreDeformed(node, edits))
            edits.doIt();
    }
}

void KelmoPostLoad(void* client) {
    if (client) MGlobal::displayInfo("KelmoPostLoad: not null data, while NULL was passed.");
    const bool hasOld = SendToNodes(kKelmoNodeId, 26, 1, "KelmoPostLoad", "") > 0;
    SendToNodes(kKelmoNode2Id, 29, 1, "KelmoPostLoad", "");
    ConnectPreDeformedInputs();
    if (hasOld)
        for (const MObject& old : FindNodesByTypeId(MTypeId(kKelmoNodeId))) ReplaceByND(old);
    MGlobal::executeCommand("KelmoInvalidateSwatchFiles");
    EvaluateOnIdle();
}

void KelmoPostImport(void* client) {
    KelmoPostLoad(client);
    SendToNodes(kKelmoNode2Id, 33, 1, "KelmoPostImport", ".");
    EvaluateOnIdle();
}

void KelmoPreSave(void*) {
    SendToNodes(kKelmoNode2Id, 28, 2, "KelmoPreSave");
    // A scene that is saved before its old nodes gave way keeps what they hold.
    SendToNodes(kKelmoNodeId, 25, 2, "KelmoPreSave");
}

void KelmoPostSave(void*) {
    SendToNodes(kKelmoNode2Id, 30, 3, "KelmoPostSave");
    SendToNodes(kKelmoNodeId, 27, 3, "KelmoPostSave");
}

void KelmoPostNew(void*) {
    MGlobal::executeCommand("KelmoInvalidateSwatchFiles");
}

struct Callback {
    MSceneMessage::Message message;
    MMessage::MBasicFunction function;
    MCallbackId* id;
};

constexpr Callback kCallbacks[] = {
    {MSceneMessage::kAfterOpen, KelmoPostLoad, &kelmoPostLoadCallbackID},
    {MSceneMessage::kAfterReference, KelmoPostLoad, &kelmoPostReferenceCallbackID},
    {MSceneMessage::kAfterImport, KelmoPostImport, &kelmoPostImportCallbackID},
    {MSceneMessage::kBeforeSave, KelmoPreSave, &kelmoPreSaveCallbackID},
    {MSceneMessage::kAfterSave, KelmoPostSave, &kelmoPostSaveCallbackID},
    {MSceneMessage::kAfterNew, KelmoPostNew, &kelmoPostNewCallbackID},
};

}  // namespace

MStatus RegisterIOCallbacks() {
    for (const Callback& callback : kCallbacks) {
        MStatus status;
        *callback.id =
            MSceneMessage::addCallback(callback.message, callback.function, nullptr, &status);
        CHECK_MSTATUS_AND_RETURN_IT(status);
    }
    return MS::kSuccess;
}

void DeregisterIOCallbacks() {
    for (const Callback& callback : kCallbacks) MMessage::removeCallback(*callback.id);
}

}  // namespace VantrelSDK
