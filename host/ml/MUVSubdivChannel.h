#pragma once

#include <maya/MObject.h>

#include "core/subdiv/LUVSubdivChannel.h"
#include "core/subdiv/LevelPolygons.h"

namespace VantrelSDK {

/// Gives mesh data, whose polygons are those of a level, the UV set of a channel, made where it is
/// missing. A polygon with a corner that has no point gets none. False, which is told, when the
/// host refuses it.
bool WriteUVSet(const LUVSubdivChannel& channel, int level, const LevelPolygons& polygons,
                const MObject& mesh);

}  // namespace VantrelSDK
