#include "host/commands/ToolCommands.h"

#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <algorithm>

#include "host/commands/EditCommand.h"
#include "host/commands/KelmoCreate.h"
#include "host/nodes/Finders.h"
#include "host/tools/KelmoPickContext.h"
#include "host/tools/KelmoSelCtx.h"

namespace VantrelSDK {

namespace {

/// Makes the tool where there is none yet.
MStatus MakeTool(const MString& command, const MString& name) {
    int exists = 0;
    MGlobal::executeCommand(command + " -exists " + name, exists);
    return exists ? MStatus() : MGlobal::executeCommand(command + " " + name + ";");
}

/// The nodes that are selected, or before or behind what is.
MObjectArray SelectedNodes() {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    MObjectArray nodes;
    const auto add = [&nodes](const MObject& node) {
        if (IsKelmoNode2(node) && !std::ranges::count(nodes, node)) nodes.append(node);
    };
    for (unsigned i = 0; i < selected.length(); ++i) {
        MObject item;
        if (!selected.getDependNode(i, item)) continue;
        const MObject shape = ShapeOf(item);
        add(shape.isNull() ? item : FindInputKelmo(shape));
    }
    return nodes;
}

}  // namespace

MStatus KelmoSelCmd::doIt(const MArgList&) {
    if (isExecuting) return MS::kSuccess;
    isExecuting = true;
    const MStatus status = Do();
    isExecuting = false;
    return status;
}

MStatus KelmoSelCmd::Do() {
    MObject node, shape;
    if (!FindWorkingKelmoNode(node, shape)) {
        const MObjectArray meshes = SelectedShapes();
        MString made;
        if (meshes.length() == 0) return Failed("KelmoSelCmd: please select single mesh node\n");
        if (!CreateKelmoOver(meshes[0], made)) return MS::kFailure;
        node = FindNodeByName(made);
    }
    CHECK_MSTATUS_AND_RETURN_IT(MakeTool("KelmoSelectContext", KelmoSelCtx::ctxName));
    KelmoSelCtx::SetKelmo(node);
    return MGlobal::executeCommand(MString("setToolTo ") + KelmoSelCtx::ctxName +
                                   "; selectMode -component; selectType -facet true;");
}

MStatus KelmoPickCmd::doIt(const MArgList&) {
    const MObjectArray nodes = SelectedNodes();
    if (nodes.length() == 0) return Failed("Select the Kelmo deformer first");
    if (nodes.length() > 1) return Failed("Select one Kelmo deformer only");
    CHECK_MSTATUS_AND_RETURN_IT(MakeTool("KelmoPickContext", KelmoPickContext::ctxName));
    KelmoPickContext::SetKelmo(nodes[0]);
    return MGlobal::executeCommand(MString("setToolTo ") + KelmoPickContext::ctxName);
}

}  // namespace VantrelSDK
