#pragma once

#include "host/commands/EditCommand.h"

namespace VantrelSDK {

/// KelmoTime -kelmo NAME: the scene's time drives the node, or the current one.
class KelmoTimeCmd : public EditCommand {
  public:
    static void* creator() { return new KelmoTimeCmd; }
    static MSyntax newSyntax();

    MStatus doIt(const MArgList& words) override;
};

/// KelmoSetVer -kelmo NAME, or -allNodes: writes the running version into nodes.
class KelmoSetVerCmd : public EditCommand {
  public:
    static void* creator() { return new KelmoSetVerCmd; }
    static MSyntax newSyntax();

    MStatus doIt(const MArgList& words) override;

  private:
    void Update(const MObject& node);
};

}  // namespace VantrelSDK
