#pragma once

#include <maya/MObject.h>
#include <maya/MString.h>

namespace VantrelSDK {

/// Puts a node over a mesh that has none, by script; a part of what is being done, for undo. False
/// where it could not, which has been told; a mesh without UVs by a dialog.
bool CreateKelmoOver(const MObject& mesh, MString& node);

}  // namespace VantrelSDK
