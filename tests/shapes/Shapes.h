#pragma once

#include <string>
#include <vector>

#include "core/io/PolyMesh.h"
#include "tests/shapes/Generators.h"

/// The zoo: small meshes named and tagged after the features they hold. A test runs over all
/// that fit.
namespace VantrelSDK::shapes {

enum Tag : unsigned {
    Open = 1 << 0,         ///< some edge has one polygon only
    Closed = 1 << 1,       ///< every edge has two polygons
    NonManifold = 1 << 2,  ///< more than two polygons at an edge, clashing winding, or a bow-tie
    Degenerate = 1 << 3,   ///< a polygon without area, with a vertex named twice, or given twice
};

struct Shape {
    std::string name;
    unsigned tags = 0;
    PolyMesh mesh;
};

const std::vector<Shape>& AllShapes();
/// The shapes that have polygons, without those that have one of the tags.
std::vector<Shape> ShapesWithFaces(unsigned without = 0);

/// True when two meshes are equal in everything, numbers bit for bit (0 and -0 differ).
bool SameBits(const PolyMesh& a, const PolyMesh& b);

}  // namespace VantrelSDK::shapes
