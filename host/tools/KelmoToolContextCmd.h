#pragma once

#include <maya/MPxContextCommand.h>

#include "host/tools/KelmoToolContext.h"

namespace VantrelSDK {

/// KelmoToolContext: makes the sculpt tool, and edits and queries it and the node that it is on.
class KelmoToolContextCmd : public MPxContextCommand {
  public:
    static void* creator() { return new KelmoToolContextCmd; }

    MPxContext* makeObj() override { return tool_ = new KelmoToolContext; }
    MStatus appendSyntax() override;
    MStatus doEditFlags() override;
    MStatus doQueryFlags() override;

  private:
    /// The host owns it, and keeps it as long as the command.
    KelmoToolContext* tool_ = nullptr;
};

}  // namespace VantrelSDK
