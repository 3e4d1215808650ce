#pragma once

#include <maya/MIntArray.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>

namespace VantrelSDK {

/// The shading groups of the mesh that a node feeds, the first one downstream, and for each of its
/// polygons the place of its group in `shaders`, -1 for none. `mesh` is that shape, null without
/// one. Returns the length of `indices`, 0 where there is no mesh.
int EnumShaders(const MObject& node, MObject& mesh, MObjectArray& shaders, MIntArray& indices);

}  // namespace VantrelSDK
