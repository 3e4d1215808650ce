#pragma once

#include <maya/MObject.h>
#include <maya/MString.h>

namespace VantrelSDK {

class LMorphTarget;
class LSubdivMesh;
class MLNode;

/// Makes a scene mesh, named so, of a level (-1: the active one) with the positions of `shape`.
/// Returns its transform; null, which is told, when it can't be made.
MObject ExportToDag(MLNode& node, const LSubdivMesh& shape, int level, const MString& name);
/// The same of a stored shape, on the skin that it was made on.
MObject ExportToDag(MLNode& node, LMorphTarget& target, int level);

/// Makes a stored shape of a posed host mesh with the top level's vertices, or of an OBJ file with
/// the active level's. False, with what is wrong, for another number of them.
bool MakeMorphFromMesh(MLNode& node, const MObject& mesh, LMorphTarget& target, MString& error);
bool MakeMorphFromObj(MLNode& node, const MString& path, LMorphTarget& target, MString& error);

}  // namespace VantrelSDK
