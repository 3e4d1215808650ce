#pragma once

#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// KelmoSel: takes up the tool that selects polygons of the current mesh, which gets a node where
/// it has none.
class KelmoSelCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoSelCmd; }
    MStatus doIt(const MArgList& words) override;

  private:
    MStatus Do();

    static inline bool isExecuting = false;
};

/// KelmoPick: takes up the tool that picks a mesh in a view, whose shape becomes a new target of
/// the one node that is selected.
class KelmoPickCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoPickCmd; }
    MStatus doIt(const MArgList& words) override;
};

}  // namespace VantrelSDK
