#pragma once

#include "host/commands/NodeCommand.h"

namespace VantrelSDK {

// One command for each kind of object that a node holds: KelmoTarget, KelmoNeutral, KelmoTracks,
// KelmoMasks, KelmoSubdivs.

extern const NodeCommandTable kKelmoTargetCmd, kKelmoNeutralCmd, kKelmoTracksCmd, kKelmoMasksCmd,
    kKelmoSubdivsCmd;

}  // namespace VantrelSDK
