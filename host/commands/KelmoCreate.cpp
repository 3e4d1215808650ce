#include "host/commands/KelmoCreate.h"

#include <maya/MGlobal.h>

#include "host/commands/KelmoTweaks.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

bool CreateKelmoOver(const MObject& mesh, MString& node) {
    const MString named = " -node " + Quoted(NameOf(mesh));
    int hasUVs = 0;
    if (!MGlobal::executeCommand("Kelmo -checkuvs" + named, hasUVs)) return false;
    if (hasUVs) return bool{MGlobal::executeCommand("Kelmo -create" + named, node, false, true)};
    RunUndoable(
        "confirmDialog -title \"Vantrel\" -message \"Can not create Kelmo Node - no UV set is"
        " present\" -button \"Continue\"");
    return false;
}

}  // namespace VantrelSDK
