#include "host/commands/KelmoTweaks.h"

#include <maya/MGlobal.h>

#include <map>

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

MStatus RunUndoable(const MString& script) {
    return MGlobal::executeCommand(script, false, true);
}

MString Quoted(const MString& name) {
    return MString("\"") + name + "\"";
}

// A helper makes the host put a tweak where it stands.
MStatus GatherTweaks(const MObject& shape, MDGModifier& edits, const Tweaks& more) {
    std::map<unsigned, MPoint> sums;
    for (const Tweaks& part : {GetTweakData(shape), more})
        for (const auto& [vertex, offset] : part) sums[vertex] += offset - MPoint();
    for (const MObject& old : FindInputTweaks(shape))
        CHECK_MSTATUS_AND_RETURN_IT(RunUndoable("delete " + Quoted(NameOf(old))));
    MStringArray helpers;
    const MString make =
        MString("deformer -type ") + kKelmoHelperName + " " + Quoted(NameOf(shape));
    CHECK_MSTATUS_AND_RETURN_IT(MGlobal::executeCommand(make, helpers, false, true));
    for (const MString& helper : helpers)
        CHECK_MSTATUS_AND_RETURN_IT(RunUndoable("delete " + Quoted(helper)));
    SetTweakData(FindInputTweak(shape), Tweaks(sums.begin(), sums.end()), edits);
    return edits.doIt();
}

}  // namespace VantrelSDK
