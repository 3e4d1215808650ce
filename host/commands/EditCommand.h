#pragma once

#include <maya/MDGModifier.h>
#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// A command that edits the graph; undo takes the edits back.
class EditCommand : public MPxCommand {
  public:
    MStatus undoIt() override { return _dgMod.undoIt(); }
    MStatus redoIt() override { return _dgMod.redoIt(); }
    bool isUndoable() const override { return edited_; }

    /// What a doIt ends with: edits of one that fails are taken back at once.
    MStatus Ended(MStatus status);
    /// From the first call on there is something for undo.
    MDGModifier& Edits() {
        edited_ = true;
        return _dgMod;
    }

  private:
    MDGModifier _dgMod;
    bool edited_ = false;
};

/// kFailure, with the error told.
MStatus Failed(const MString& error);

}  // namespace VantrelSDK
