#pragma once

#include "minihost/graph/Modifier.h"

namespace minihost {

/// Registers "shadingEngine", "lambert", "blinn", "phong", "file", "place2dTexture", "uvChooser",
/// the lists that scenes keep these in ("defaultShaderList", "defaultTextureList",
/// "defaultRenderUtilityList"), and "renderGlobals". They hold settings and connections: nothing is
/// shaded by them. Sets must be registered.
void RegisterShadeTypes(NodeTypes& types);

/// "initialShadingGroup" with "lambert1", "renderPartition", "defaultShaderList1",
/// "defaultTextureList1", "defaultRenderUtilityList1", "defaultRenderGlobals", where they are
/// missing.
void MakeDefaultShading(Modifier& edits);

}  // namespace minihost
