#pragma once

#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MSyntax.h>

namespace VantrelSDK {

class MLNode;

/// KelmoSculpt -mode NUMBER: takes up the sculpt tool for the meshes that are selected, with nodes
/// where they have none, and sets what the brush affects and how.
class KelmoSculptCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoSculptCmd; }
    static MSyntax newSyntax();

    MStatus doIt(const MArgList& words) override;

  private:
    MStatus Do(const MArgList& words);
    MStatus TakeTool();
    /// One node for each mesh that is selected, made where there was none. False where they can't
    /// be sculpted, which has been told.
    bool PrepareNodes();
    static MStatus SetMode(unsigned mode);

    MSelectionList selectionBackup;
    static inline bool isExecuting = false;
};

}  // namespace VantrelSDK
