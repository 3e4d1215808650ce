#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "core/io/PolyMesh.h"
#include "tests/shapes/Generators.h"

/// The zoo: small meshes named and tagged after the features they hold. A test asks for tags and
/// runs over all that fit.
namespace VantrelSDK::shapes {

enum Tag : unsigned {
    Quads = 1 << 0,        ///< every polygon has 4 corners
    Triangles = 1 << 1,    ///< every polygon has 3 corners
    Ngons = 1 << 2,        ///< some polygon has more than 4 corners
    Open = 1 << 3,         ///< some edge has one polygon only
    Closed = 1 << 4,       ///< every edge has two polygons
    NonManifold = 1 << 5,  ///< more than two polygons at an edge, clashing winding, or a bow-tie
    Seams = 1 << 6,        ///< some vertex has more than one UV
    Isolated = 1 << 7,     ///< some vertex has no polygon
    Degenerate = 1 << 8,   ///< a polygon without area, with a vertex named twice, or given twice
    Sheet = 1 << 9,        ///< flat: all in z = 0
    Symmetric = 1 << 10,   ///< each position has its exact mirror in x
};

struct Shape {
    std::string name;
    unsigned tags = 0;
    PolyMesh mesh;
};

/// For the names of parameterised tests.
inline std::ostream& operator<<(std::ostream& out, const Shape& shape) {
    return out << shape.name;
}

const std::vector<Shape>& AllShapes();
/// The shapes that have all of the tags.
std::vector<Shape> ShapesWith(unsigned tags);

/// True when two meshes are equal in everything, numbers bit for bit (0 and -0 differ).
bool SameBits(const PolyMesh& a, const PolyMesh& b);

}  // namespace VantrelSDK::shapes
