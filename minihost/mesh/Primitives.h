#pragma once

#include "minihost/graph/NodeType.h"
#include "minihost/mesh/MeshData.h"

namespace minihost {

/// Shapes about the origin, +Y up, with one UV set. Counts are kept from 1 to 3000.

/// A sheet in XZ, its polygons facing +Y, vertices row by row from -X +Z; UVs fill the unit square.
MeshPtr MakePlane(double width, double height, int columns, int rows);
/// A closed box; UVs unfold its six sides into a cross, each side `1 / 4` by `1 / 4`.
MeshPtr MakeCube(double width, double height, double depth, int columns, int rows, int layers);
/// Quads between circles of latitude, triangles at the poles; UVs by longitude and latitude, with a
/// seam. `around`: at least 3; `rows`: at least 2.
MeshPtr MakeSphere(double radius, int around, int rows);

/// Registers "polyCube", "polyPlane" and "polySphere", whose "output" is the mesh.
void RegisterPrimitives(NodeTypes& types);
/// What a transform above one is called: "pCube1".
std::string PrimitiveName(const std::string& type);

}  // namespace minihost
