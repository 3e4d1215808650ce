#include "host/commands/KelmoStrokeCmd.h"

#include <maya/MGlobal.h>

#include "host/commands/NodeProtocol.h"
#include "host/nodes/Finders.h"
#include "host/tools/KelmoToolContext.h"

namespace VantrelSDK {

MStatus KelmoStrokeCmd::doIt(const MArgList&) {
    const KelmoToolContext* tool = KelmoToolContext::GetActiveContext();
    MObject shape;
    if (tool && tool->node()) kmNode = tool->brushNode();
    if (!kmNode.isNull() || FindWorkingKelmoNode(kmNode, shape)) return MS::kSuccess;
    MGlobal::displayWarning("KelmoStrokeCmd: select Kelmo to display AE correctly.");
    return MS::kFailure;
}

MStatus KelmoStrokeCmd::undoIt() {
    // The node has no record of a stroke that goes on.
    KelmoToolContext* tool = KelmoToolContext::GetActiveContext();
    if (tool && tool->brushNode() == kmNode) tool->FinishStroke();
    NodeProtocol node(kmNode);
    const MString missing = node.missing() ? node.missing() : "";
    if (missing == "commnad" || missing == "execute") {
        MGlobal::displayError(MString("KelmoStrokeCmd: (undo) can not find ") +
                              (missing == "execute" ? "exe" : "command") + " plug\n");
        return MS::kFailure;
    }
    node.Run(6, 1000);
    return MS::kSuccess;
}

}  // namespace VantrelSDK
