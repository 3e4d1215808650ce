#include "host/commands/KelmoStrokeCmd.h"

#include <maya/MGlobal.h>

#include "host/commands/NodeProtocol.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

MStatus KelmoStrokeCmd::doIt(const MArgList&) {
    MObject shape;
    if (FindWorkingKelmoNode(kmNode, shape)) return MS::kSuccess;
    MGlobal::displayWarning("KelmoStrokeCmd: select Kelmo to display AE correctly.");
    return MS::kFailure;
}

MStatus KelmoStrokeCmd::undoIt() {
    NodeProtocol(kmNode).Run(6);
    return MS::kSuccess;
}

}  // namespace VantrelSDK
