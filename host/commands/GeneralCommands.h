#pragma once

#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// KelmoVersion: -version tells the text, -versionInt the number.
class KelmoVersionCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoVersionCmd; }
    static MSyntax newSyntax();
    MStatus doIt(const MArgList& words) override;
};

/// KelmoDiag: -OpenGL tells what there is to draw with, -patterns which patterns can be read;
/// without a flag the interface's own diagnosis runs, where there is one.
class KelmoDiagCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoDiagCmd; }
    static MSyntax newSyntax();
    MStatus doIt(const MArgList& words) override;
};

/// KelmoTimes: what the pointer's events took since it was asked last, in milliseconds: rays into
/// the surface, steps of strokes, evaluation of what they moved; then how many rays and steps.
class KelmoTimesCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoTimesCmd; }
    MStatus doIt(const MArgList& words) override;
};

/// KelmoRender: what nodes do around a render; the host's render settings call it.
class KelmoRenderCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoRenderCmd; }
    static MSyntax newSyntax();
    MStatus doIt(const MArgList& words) override;
};

}  // namespace VantrelSDK
