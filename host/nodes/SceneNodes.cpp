#include "host/nodes/SceneNodes.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>

#include "host/nodes/Finders.h"

namespace VantrelSDK {

int SendToNodes(unsigned typeId, int command, int label, const char* who, const char* tail) {
    const MObjectArray nodes = FindNodesByTypeId(MTypeId(typeId));
    for (const MObject& node : nodes) {
        const MFnDependencyNode known(node);
        MPlug number = known.findPlug("commnad"), execute = known.findPlug("execute");
        const char* missing = number.isNull() ? "command" : execute.isNull() ? "exe" : nullptr;
        if (missing) {
            MGlobal::displayError(MString(who) + ": can not find " + missing + " plug" + tail);
            continue;
        }
        number.setValue(command);
        execute.setValue(label);
    }
    return static_cast<int>(nodes.length());
}

}  // namespace VantrelSDK
