#include "host/ml/InterfaceProcedures.h"

#include <maya/MGlobal.h>

namespace VantrelSDK {

bool IsKnown(const MString& procedure) {
    return MGlobal::executeCommandStringResult("whatIs " + procedure) != "Unknown";
}

MStatus RunIfKnown(const MString& procedure, const MString& arguments) {
    return IsKnown(procedure) ? MGlobal::executeCommand(procedure + " " + arguments) : MS::kSuccess;
}

}  // namespace VantrelSDK
