#pragma once

#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// KelmoPatterns [flags] NODE: what interfaces need of a node's patterns. -add FILE appends one
/// with that picture, and answers its number; -query -names what they are called, -query -preview
/// NUMBER the small picture of one, LPattern::kSide pixels a side, three numbers each, from the
/// top; nothing without one.
class KelmoPatternsCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoPatternsCmd; }
    static MSyntax newSyntax();
    MStatus doIt(const MArgList& words) override;
};

}  // namespace VantrelSDK
