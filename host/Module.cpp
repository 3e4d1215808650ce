#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>

#include "core/sculpt/LNodeRecord.h"
#include "host/commands/GeneralCommands.h"
#include "host/commands/KelmoCmd.h"
#include "host/commands/KelmoJournalCmd.h"
#include "host/commands/KelmoNewCmd.h"
#include "host/commands/KelmoPatternsCmd.h"
#include "host/commands/KelmoSculptCmd.h"
#include "host/commands/KelmoStrokeCmd.h"
#include "host/commands/ObjectCommands.h"
#include "host/commands/ToolCommands.h"
#include "host/commands/WiringCommands.h"
#include "host/gl/GLInfo.h"
#include "host/gl/KelmoSurfaceCallback.h"
#include "host/gl/KelmoSurfaceShape.h"
#include "host/gl/KelmoSurfaceShapeUI.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/UnusedNames.h"
#include "host/ml/Diagnostics.h"
#include "host/nodes/KelmoBlindData.h"
#include "host/nodes/KelmoIOCallbacks.h"
#include "host/nodes/KelmoMtlMessage.h"
#include "host/nodes/KelmoNode.h"
#include "host/nodes/KelmoNode2.h"
#include "host/nodes/KelmoRenderMessage.h"
#include "host/nodes/NodeCallbacks.h"
#include "host/tools/KelmoPickContext.h"
#include "host/tools/KelmoSelCtx.h"
#include "host/tools/KelmoToolContextCmd.h"
#include "host/tools/KelmoToolLocator.h"
#include "host/tools/Tablet.h"

// What the module brings, in the order in which the host hears of it and, elsewhere, in which it is
// taken down. Scenes and scripts rely on names and numbers alone.

using namespace VantrelSDK;

namespace {

struct DataRow {
    const char* name;
    unsigned id;
    MCreatorFunction creator;
    const char* registering;
};
constexpr DataRow kData[] = {
    {kBlindDataName, kBlindDataId, KelmoBlindData::creator, "register KelmoBlindData"},
    {kSurfaceCallbackName, kSurfaceCallbackId, KelmoSurfaceCallback::creator,
     "register KelmoSurfaceCallback"},
    {kStencilCallbackName, kStencilCallbackId, KelmoStencilCallback::creator,
     "register KelmoStencilCallback"},
    {kRefImageCallbackName, kRefImageCallbackId, KelmoRefImageCallback::creator,
     "register KelmoRefImageCallback"},
};

struct NodeRow {
    const char* name;
    unsigned id;
    MCreatorFunction creator;
    MInitializeFunction initialize;
    MPxNode::Type kind;
    const char* registering;
};
constexpr NodeRow kNodes[] = {
    {kKelmoNodeName, kKelmoNodeId, KelmoNode::creator, KelmoNode::initialize,
     MPxNode::kDeformerNode, "register Kelmo Defromer node"},
    {kKelmoNode2Name, kKelmoNode2Id, KelmoNode2::creator, KelmoNode2::initialize,
     MPxNode::kDependNode, "register Kelmo2 node"},
    {kKelmoHelperName, kKelmoHelperId, KelmoHelper::creator, KelmoHelper::initialize,
     MPxNode::kDeformerNode, "register Kelmo helper node"},
    {kToolLocatorName, kToolLocatorId, KelmoToolLocator::creator, KelmoToolLocator::initialize,
     MPxNode::kLocatorNode, "register Kelmo Tool Locator Node"},
};
/// The order in which they go.
constexpr unsigned kNodesDown[] = {kKelmoNode2Id, kKelmoHelperId, kKelmoNodeId, kToolLocatorId,
                                   kSurfaceShapeId};

struct ContextRow {
    const char* name;
    MCreatorFunction creator;
    const char* registering;
};
constexpr ContextRow kContexts[] = {
    {"KelmoToolContext", KelmoToolContextCmd::creator, "register Tool Context Command"},
    {"KelmoPickContext", KelmoPickContextCmd::creator, "register Pick Context Command"},
    {"KelmoSelectContext", KelmoSelCtxCmd::creator, "register Selection Context Command"},
};

struct CommandRow {
    const char* name;
    MCreatorFunction creator;
    MCreateSyntaxFunction syntax;
};
constexpr CommandRow kCommands[] = {
    {"KelmoNew", KelmoNewCmd::creator, KelmoNewCmd::newSyntax},
    {"KelmoVersion", KelmoVersionCmd::creator, KelmoVersionCmd::newSyntax},
    {"Kelmo", MakeNodeCommand<kKelmoCmd>, MakeNodeSyntax<kKelmoCmd>},
    {"KelmoTime", KelmoTimeCmd::creator, KelmoTimeCmd::newSyntax},
    {"KelmoSetVer", KelmoSetVerCmd::creator, KelmoSetVerCmd::newSyntax},
    {"KelmoDiag", KelmoDiagCmd::creator, KelmoDiagCmd::newSyntax},
    {"KelmoSculpt", KelmoSculptCmd::creator, KelmoSculptCmd::newSyntax},
    {"KelmoSel", KelmoSelCmd::creator, nullptr},
    {"KelmoPick", KelmoPickCmd::creator, nullptr},
    {"KelmoNeutral", MakeNodeCommand<kKelmoNeutralCmd>, MakeNodeSyntax<kKelmoNeutralCmd>},
    {"KelmoTarget", MakeNodeCommand<kKelmoTargetCmd>, MakeNodeSyntax<kKelmoTargetCmd>},
    {"KelmoTracks", MakeNodeCommand<kKelmoTracksCmd>, MakeNodeSyntax<kKelmoTracksCmd>},
    {"KelmoMasks", MakeNodeCommand<kKelmoMasksCmd>, MakeNodeSyntax<kKelmoMasksCmd>},
    {"KelmoStroke", KelmoStrokeCmd::creator, nullptr},
    {"KelmoSubdivs", MakeNodeCommand<kKelmoSubdivsCmd>, MakeNodeSyntax<kKelmoSubdivsCmd>},
    {"KelmoRender", KelmoRenderCmd::creator, KelmoRenderCmd::newSyntax},
    {"KelmoJournal", KelmoJournalCmd::creator, KelmoJournalCmd::newSyntax},
    {"KelmoPatterns", KelmoPatternsCmd::creator, KelmoPatternsCmd::newSyntax},
    {"KelmoTimes", KelmoTimesCmd::creator, nullptr},
};
constexpr const char* kCommandsDown[] = {
    "KelmoVersion", "Kelmo",        "KelmoNew",      "KelmoTime",   "KelmoSetVer",
    "KelmoDiag",    "KelmoSculpt",  "KelmoSel",      "KelmoPick",   "KelmoNeutral",
    "KelmoTarget",  "KelmoTracks",  "KelmoMasks",    "KelmoStroke", "KelmoSubdivs",
    "KelmoRender",  "KelmoJournal", "KelmoPatterns", "KelmoTimes",
};

/// Tells a failure by what was being done.
MStatus Checked(const MStatus& status, const MString& what) {
    if (!status) status.perror(what);
    return status;
}

MStatus RegisterTypes(MFnPlugin& plugin) {
    for (const DataRow& row : kData)
        CHECK_MSTATUS_AND_RETURN_IT(
            Checked(plugin.registerData(row.name, MTypeId(row.id), row.creator), row.registering));
    for (const NodeRow& row : kNodes)
        CHECK_MSTATUS_AND_RETURN_IT(Checked(
            plugin.registerNode(row.name, MTypeId(row.id), row.creator, row.initialize, row.kind),
            row.registering));
    CHECK_MSTATUS_AND_RETURN_IT(
        Checked(plugin.registerShape(kSurfaceShapeName, MTypeId(kSurfaceShapeId),
                                     KelmoSurfaceShape::creator, KelmoSurfaceShape::initialize,
                                     KelmoSurfaceShapeUI::creator),
                "register KelmoSurfaceShape Node"));
    for (const ContextRow& row : kContexts)
        CHECK_MSTATUS_AND_RETURN_IT(
            Checked(plugin.registerContextCommand(row.name, row.creator), row.registering));
    for (const CommandRow& row : kCommands)
        CHECK_MSTATUS_AND_RETURN_IT(
            Checked(plugin.registerCommand(row.name, row.creator, row.syntax), row.name));
    return MS::kSuccess;
}

MStatus RegisterMessages(MFnPlugin& plugin) {
    CHECK_MSTATUS_AND_RETURN_IT(Checked(RegisterIOCallbacks(), "RegisterIOCallbacks"));
    CHECK_MSTATUS_AND_RETURN_IT(
        Checked(KelmoRenderMessage::RegisterRenderCallbacks(), "RegisterRenderCallbacks"));
    KelmoMtlMessage::RegisterCallbacks();
    return Checked(plugin.registerUI("KelmoCreateUI", "KelmoDeleteUI", "", ""),
                   "registerUIScripts");
}

void ReportFile(const char* name, const char* found) {
    const MString folder = GetPatternsPath(name, true);
    if (folder.length() > 0) MGlobal::displayInfo(found + folder);
}

/// What the person may want to know of the surroundings.
void Report() {
    if (MGlobal::mayaState() == MGlobal::kInteractive) {
        MGlobal::executeCommand("KelmoAssignHotkeys");
        MGlobal::executeCommand("KelmoToolContextHotkeys 0");
    }
    PrintGlInfo();
    MLNode::LoadPreferences();
    if (LNode::prefDoUseTablet)
        Tablet_Load();
    else
        MGlobal::displayInfo("TABLET SENSIVITY IS OF - YOU CAN TURN IT ON KELMO PREFERENCES");
    ReportFile("patterns.cfg", "Vantrel: patterns configuration file is found in\n//");
    ReportFile("kmmove.xpm", "Vantrel: icons are found in\n");
    MGlobal::displayInfo(MString("Vantrel (") + GetKelmoVersionString().c_str() + ") is loaded.");
}

MStatus DeregisterTypes(MFnPlugin& plugin) {
    // A tool that is on holds nodes.
    MGlobal::executeCommand("setToolTo selectSuperContext");
    for (const unsigned id : kNodesDown)
        CHECK_MSTATUS_AND_RETURN_IT(
            Checked(plugin.deregisterNode(MTypeId(id)), "deregister Kelmo nodes"));
    for (const DataRow& row : kData)
        CHECK_MSTATUS_AND_RETURN_IT(
            Checked(plugin.deregisterData(MTypeId(row.id)), MString("de") + row.registering));
    for (const ContextRow& row : kContexts)
        CHECK_MSTATUS_AND_RETURN_IT(Checked(plugin.deregisterContextCommand(row.name), row.name));
    for (const char* name : kCommandsDown)
        CHECK_MSTATUS_AND_RETURN_IT(Checked(plugin.deregisterCommand(name), name));
    return MS::kSuccess;
}

}  // namespace

MStatus initializePlugin(MObject module) {
    MFnPlugin plugin(module, "Vantrel", GetKelmoVersionString().c_str(), "Any");
    CHECK_MSTATUS_AND_RETURN_IT(RegisterTypes(plugin));
    CHECK_MSTATUS_AND_RETURN_IT(RegisterMessages(plugin));
    Report();
    return MS::kSuccess;
}

MStatus uninitializePlugin(MObject module) {
    MFnPlugin plugin(module, "Unknown", "Unknown", "Any");
    CHECK_MSTATUS_AND_RETURN_IT(DeregisterTypes(plugin));
    DeregisterIOCallbacks();
    KelmoRenderMessage::DeregisterRenderCallbacks();
    KelmoMtlMessage::DeregisterCallbacks();
    if (M3dView::numberOf3dViews() > 0) M3dView::active3dView().beginGL();
    FreeUnusedNames();
    MLDisplayCache::FreeGLSL();
    CloseDiagFile();
    Tablet_Unload();
    KelmoToolLocator::release();
    KelmoSurfaceShape::release();
    KelmoNode::release();
    KelmoNode2::release();
    return MS::kSuccess;
}
