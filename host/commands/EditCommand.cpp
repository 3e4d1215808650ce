#include "host/commands/EditCommand.h"

#include <maya/MGlobal.h>

namespace VantrelSDK {

MStatus EditCommand::Ended(MStatus status) {
    if (!status && edited_) _dgMod.undoIt();
    return status;
}

MStatus Failed(const MString& error) {
    MGlobal::displayError(error);
    return MS::kFailure;
}

}  // namespace VantrelSDK
