#include "host/commands/GeneralCommands.h"

#include <maya/MArgDatabase.h>
#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>

#include <utility>

#include "core/sculpt/LNodeRecord.h"
#include "host/commands/EditCommand.h"
#include "host/gl/GLInfo.h"
#include "host/ml/InterfaceProcedures.h"
#include "host/ml/PatternsReport.h"
#include "host/ml/StageTimes.h"
#include "host/nodes/KelmoRenderMessage.h"

namespace VantrelSDK {

MSyntax KelmoVersionCmd::newSyntax() {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.addFlag("v", "version");
    syntax.addFlag("vi", "versionInt");
    return syntax;
}

MStatus KelmoVersionCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoVersionCmd: can not parse arguments\n");
    if (parsed.isFlagSet("versionInt"))
        setResult(GetKelmoVersionInt());
    else
        setResult(GetKelmoVersionString().c_str());
    return MS::kSuccess;
}

MSyntax KelmoDiagCmd::newSyntax() {
    MSyntax syntax;
    syntax.addFlag("gl", "OpenGL");
    syntax.addFlag("pa", "patterns");
    return syntax;
}

MStatus KelmoDiagCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoDiagCmd: can not parse arguments\n");
    if (parsed.isFlagSet("OpenGL"))
        setResult(getGlMetrics());
    else if (parsed.isFlagSet("patterns"))
        setResult(getPatternsReport());
    else
        return RunIfKnown("KelmoDiagnostic");
    return MS::kSuccess;
}

MStatus KelmoTimesCmd::doIt(const MArgList&) {
    const StageTimes taken = std::exchange(StageTimes::All(), {});
    MDoubleArray answer;
    for (const double seconds : {taken.hit, taken.step, taken.recalculation})
        answer.append(seconds * 1000);
    answer.append(taken.hits);
    answer.append(taken.steps);
    setResult(answer);
    return MS::kSuccess;
}

MSyntax KelmoRenderCmd::newSyntax() {
    MSyntax syntax;
    syntax.addFlag("prr", "preRender");
    syntax.addFlag("prf", "preRenderFrame");
    syntax.addFlag("por", "postRender");
    return syntax;
}

MStatus KelmoRenderCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoRenderCmd: can not parse arguments\n");
    if (parsed.isFlagSet("preRender")) KelmoRenderMessage::KelmoPreRender(nullptr);
    if (parsed.isFlagSet("preRenderFrame")) KelmoRenderMessage::KelmoPreRenderFrame(nullptr);
    if (parsed.isFlagSet("postRender")) KelmoRenderMessage::KelmoPostRender(nullptr);
    return MS::kSuccess;
}

}  // namespace VantrelSDK
