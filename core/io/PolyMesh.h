#pragma once

#include <string>
#include <vector>

#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A mesh of polygons as a file holds it: what the core reads its triangles from and what it
/// writes.
struct PolyMesh {
    /// A line of the file that stands before polygon `polygon` (which may be the number of
    /// polygons, for lines at the end): groups, objects, smoothing groups, material names, material
    /// libraries. The text is the whole line without its end, such as "usemtl skin".
    struct Statement {
        int polygon = 0;
        std::string text;
    };

    std::vector<LPoint3> positions;
    /// One colour per position as the file gave it, or empty.
    std::vector<LPoint3> colours;
    std::vector<LPoint2> uvs;
    /// Number of polygons + 1 offsets into the corner arrays; polygon p has the corners
    /// polygonStart[p] up to polygonStart[p + 1], at least 3. Holds one 0 in an empty mesh.
    std::vector<int> polygonStart{0};
    /// Per corner: a position number, always in range.
    std::vector<int> cornerVerts;
    /// Per corner: a UV number, or -1 where there is none. Empty when no corner has one.
    std::vector<int> cornerUVs;
    /// Ordered by polygon.
    std::vector<Statement> statements;

    int NumPolygons() const { return static_cast<int>(polygonStart.size()) - 1; }
};

}  // namespace VantrelSDK
