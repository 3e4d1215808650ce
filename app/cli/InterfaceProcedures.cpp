#include "app/cli/InterfaceProcedures.h"

#include <memory>
#include <string>

#include "minihost/command/Interpreter.h"

namespace kelmo {

namespace {

using minihost::Answer;
using minihost::CommandCall;
using minihost::Value;

struct Preference {
    const char* procedure;
    int value;
};
constexpr Preference kPreferences[] = {
    {"KelmoGetNumSmoothIterationsPref", 2},
    {"KelmoGetNumSharpenIterationsPref", 1},
    {"KelmoGetTreeUpdateOnStrokeEndPref", 2},
    {"KelmoGetUseTabletPref", 0},
    {"KMGetDoSampTexEdgesPref", 1},
    {"KelmoGetDumpDiagsPref", 0},
    {"KelmoGetOctTreeLeafSizePref", 70},
    {"KelmoGet2SidedFacesPref", 0},
    {"KelmoGetNfDisplayFallbackPref", 2250000},
    {"KelmoGetDoPixPref", 0},
    {"KelmoGetDoSampPref", 1},
    {"KelmoGetMulithSmoothPref", 0},
    {"KelmoGetRehashMtlsPref", 0},
};

/// What has nothing to do as long as there are no panels.
constexpr const char* kPanelProcedures[] = {
    "KelmoCreateUI",
    "KelmoDeleteUI",
    "KelmoAssignHotkeys",
    "KelmoToolContextHotkeys",
    "KelmoToolContextUpdateIconSize",
    "KelmoToolContextUpdateProjPatternOpac",
    "KelmoToolContextUpdateProjPatternRot",
    "KelmoToolContextUpdateProjPatternSize",
    "KelmoUpdateBrushPreview",
    "KelmoGetFalloffCurve2",
    "rebuildKelmoBrushPatternLayout",
    "kelmoUpdateAffectModeList",
    "kelmoUpdateUseStencilBoxes",
    "kelmoSetUpGeomMoveUI",
    "kelmoSetUpGeomBrushUI",
    "kelmoSetUpTextureUI",
    "kelmoSetUpVColorUI",
    "kelmoSetUpStencilUI",
    "KelmoInvalidateSwatchFiles",
    "UpdateCurrentAE",
    "KelmoUpdateTrackList",
    "KelmoMixKeysUpdate",
    "ToggleAttributeEditor",
    "release_kelmoDeleteTargetBox",
};

Value Asked(CommandCall& call, const std::string& script) {
    return call.interpreter.Execute(script).value;
}

Answer AskPreference(CommandCall& call, const Preference& preference) {
    std::string variable = preference.procedure;
    variable.erase(variable.find("Get"), 3);
    if (Asked(call, "optionVar -exists " + variable).AsInt() == 0) return preference.value;
    return Asked(call, "optionVar -q " + variable).AsInt();
}

}  // namespace

void AddInterfaceProcedures(minihost::CommandTable& commands) {
    for (const Preference& preference : kPreferences)
        commands.SetProcedure(preference.procedure, [&preference](CommandCall& call) {
            return AskPreference(call, preference);
        });
    for (const char* name : kPanelProcedures)
        commands.SetProcedure(name, [](CommandCall&) { return Answer(); });
    // The nodes that are looked at: what a command works on when nothing is selected.
    const auto shown = std::make_shared<std::vector<std::string>>();
    commands.SetProcedure("updateAE", [shown](CommandCall& call) {
        *shown = {call.Text(0)};
        return Answer();
    });
    commands.SetProcedure("KelmoGetAENodes", [shown](CommandCall&) { return Answer(*shown); });
}

}  // namespace kelmo
