#pragma once

#include <maya/MObject.h>

namespace VantrelSDK {

class LMeshBases;
class LMorphDelta;

/// Adds the offsets of a delta to the vertices of mesh data of a level (-1: the top), through
/// `bases` when they are given, which then have direction 0: from the frames of the surface to
/// object space. False, which is told, for a mesh with another number of vertices.
bool Deform5(const LMorphDelta& delta, const MObject& mesh, LMeshBases* bases, int level);

}  // namespace VantrelSDK
