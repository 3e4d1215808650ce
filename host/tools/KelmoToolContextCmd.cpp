#include "host/tools/KelmoToolContextCmd.h"

#include "host/tools/ToolFlags.h"

namespace VantrelSDK {

MStatus KelmoToolContextCmd::appendSyntax() {
    MSyntax& syntax = editSyntax();
    for (const ToolFlag& flag : ToolFlags()) {
        CHECK_MSTATUS_AND_RETURN_IT(syntax.addFlag(flag.brief, flag.name, flag.type));
        if (flag.asksWith) syntax.makeFlagQueryWithFullArgs(flag.name, true);
    }
    return MS::kSuccess;
}

MStatus KelmoToolContextCmd::doEditFlags() {
    const MArgParser words = parser();
    for (const ToolFlag& flag : ToolFlags()) {
        if (!words.isFlagSet(flag.name)) continue;
        ToolCall call{*tool_, words, flag};
        CHECK_MSTATUS_AND_RETURN_IT(EditByFlag(call));
    }
    return MS::kSuccess;
}

MStatus KelmoToolContextCmd::doQueryFlags() {
    const MArgParser words = parser();
    for (const ToolFlag& flag : ToolFlags()) {
        if (!words.isFlagSet(flag.name)) continue;
        ToolCall call{*tool_, words, flag};
        return AnswerFlag(call);
    }
    return MS::kSuccess;
}

}  // namespace VantrelSDK
