#pragma once

#include <maya/MDGModifier.h>
#include <maya/MObject.h>
#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// KelmoStroke: puts the stroke that is about to begin on the host's undo queue. Whoever makes a
/// stroke runs it before the brush is connected; undo then takes the stroke back.
class KelmoStrokeCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoStrokeCmd; }

    MStatus doIt(const MArgList& words) override;
    MStatus undoIt() override;
    MStatus redoIt() override { return _dgMod.redoIt(); }
    bool isUndoable() const override { return true; }

  private:
    MObject kmNode;
    MDGModifier _dgMod;
};

}  // namespace VantrelSDK
