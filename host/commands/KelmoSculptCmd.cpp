#include "host/commands/KelmoSculptCmd.h"

#include <maya/MArgDatabase.h>
#include <maya/MGlobal.h>

#include <algorithm>
#include <iterator>

#include "host/commands/EditCommand.h"
#include "host/commands/KelmoCreate.h"
#include "host/commands/NodeProtocol.h"
#include "host/ml/InterfaceProcedures.h"
#include "host/nodes/Finders.h"
#include "host/tools/KelmoToolContext.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

constexpr N::Member kAffected[] = {&N::m_moAffectGeometry, &N::m_moAffectVertColor,
                                   &N::m_moAffectStencil, &N::m_moAffectTexture,
                                   &N::m_moAffectTexStencil};

struct Mode {
    N::Member affects;
    int brush;
    const char* procedure;
    /// What it is called when several meshes are sculpted as one, which have it not; null: they do.
    const char* alone;
    bool isBuilt;
};
constexpr Mode kModes[] = {
    {&N::m_moAffectGeometry, 0, "kelmoSetUpGeomMoveUI", nullptr, true},
    {&N::m_moAffectGeometry, 8, "kelmoSetUpGeomBrushUI", nullptr, true},
    {&N::m_moAffectTexture, 8, "kelmoSetUpTextureUI", "texture painting", false},
    {&N::m_moAffectTexStencil, 8, "kelmoSetUpTextureUI", "texture stencil painting", false},
    {&N::m_moAffectVertColor, 8, "kelmoSetUpVColorUI", "vertex color painting", true},
    {&N::m_moAffectStencil, 8, "kelmoSetUpStencilUI", "vertex stencil painting", true},
};

bool IsToolOn() {
    return MGlobal::executeCommandStringResult("contextInfo -q -c `currentCtx`") ==
           "KelmoToolContext";
}

/// A mesh that nobody has sculpted yet.
bool SelectsFreshMesh() {
    return std::ranges::any_of(SelectedShapes(),
                               [](const MObject& shape) { return !HasKelmoConnected(shape); });
}

int LevelCount(const MObject& node) {
    BringUpToDate(node);
    NodeProtocol protocol(node);
    protocol.Ask(90, 1234);
    return protocol.index();
}

}  // namespace

MSyntax KelmoSculptCmd::newSyntax() {
    MSyntax syntax;
    syntax.addFlag("m", "mode", MSyntax::kUnsigned);
    return syntax;
}

MStatus KelmoSculptCmd::doIt(const MArgList& words) {
    // What it selects and turns on may lead here again.
    if (isExecuting) return MS::kSuccess;
    isExecuting = true;
    const MStatus status = Do(words);
    isExecuting = false;
    return status;
}

MStatus KelmoSculptCmd::Do(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoSculptCmd: can not parse arguments\n");
    const bool given = parsed.isFlagSet("mode");
    unsigned mode = 0;
    parsed.getFlagArgument("mode", 0, mode);
    if (given && mode >= std::size(kModes)) return MS::kSuccess;
    if (!IsToolOn() || SelectsFreshMesh()) CHECK_MSTATUS_AND_RETURN_IT(TakeTool());
    return given ? SetMode(mode) : MS::kSuccess;
}

MStatus KelmoSculptCmd::TakeTool() {
    MGlobal::getActiveSelectionList(selectionBackup);
    if (selectionBackup.isEmpty()) {
        MGlobal::displayWarning("Kelmo: please select mesh to sculpt.");
        return MS::kFailure;
    }
    if (!PrepareNodes()) return MS::kFailure;
    MGlobal::setActiveSelectionList(selectionBackup);
    MObject node, shape;
    if (!FindWorkingKelmoNode(node, shape)) {
        MGlobal::displayWarning("KelmoSculptCmd: can not find kelmo connected");
        return MS::kFailure;
    }
    if (KelmoToolContext* tool = KelmoToolContext::GetActiveContext()) {
        tool->FollowSelection();
        return MS::kSuccess;
    }
    const MString name = KelmoToolContext::ctxName;
    return MGlobal::executeCommand("if (!`KelmoToolContext -exists " + name +
                                   "`) KelmoToolContext " + name + "; setToolTo " + name);
}

bool KelmoSculptCmd::PrepareNodes() {
    int levels = -1;
    const MObjectArray shapes = SelectedShapes();
    for (const MObject& shape : shapes) {
        MString made;
        if (!HasKelmoConnected(shape) && !CreateKelmoOver(shape, made)) return false;
        const int own = shapes.length() > 1 ? LevelCount(FindInputKelmo(shape)) : levels;
        if (levels >= 0 && own != levels) {
            MGlobal::displayError(
                "Kelmo: Objects have differnt number of sudivsion levels. Can't sculpt");
            return false;
        }
        levels = own;
    }
    // There is no stroke over several meshes in this version.
    if (shapes.length() > 1)
        MGlobal::displayInfo("Kelmo: the brush works on one of the meshes, " + NameOf(shapes[0]) +
                             "; it goes where the selection goes.");
    return true;
}

MStatus KelmoSculptCmd::SetMode(unsigned mode) {
    const Mode& chosen = kModes[mode];
    KelmoToolContext* tool = KelmoToolContext::GetActiveContext();
    const MLNode* node = tool ? tool->node() : nullptr;
    if (!node) {
        MGlobal::displayWarning("KelmoSculptCmd: can not find kelmo connected");
        return MS::kFailure;
    }
    if (chosen.alone && node->plug(&N::m_moMultiSculpt).asBool()) {
        MGlobal::displayWarning(MString("Kelmo: multi-mesh editing does not support ") +
                                chosen.alone + " yet.");
        return MS::kSuccess;
    }
    if (!chosen.isBuilt)
        return Failed("KelmoSculptCmd: painting textures is not part of this version");
    for (const N::Member attribute : kAffected)
        node->plug(attribute).setValue(attribute == chosen.affects);
    tool->setBrushMode(chosen.brush);
    RunIfKnown(chosen.procedure);
    return RunIfKnown("kelmoUpdateAffectModeList");
}

}  // namespace VantrelSDK
