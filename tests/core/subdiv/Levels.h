#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/mesh/Triangulation.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

/// The positions of all levels.
inline std::vector<LPoint3> AllVerts(const LSubdivMesh& mesh) {
    const int count = mesh.GetNumLevelVerts(mesh.GetNumSubivLevels() - 1);
    return {mesh.GetAllVertsPtr(), mesh.GetAllVertsPtr() + count};
}

/// A level of quads for 'q', of triangles for 'l'; capitals smooth it.
inline bool AddLevel(LSubdivMesh& mesh, char kind) {
    const bool smooth = kind < 'a';
    return (kind | 32) == 'q' ? mesh.SubdivideAll_Quad(smooth, true)
                              : mesh.SubdivideAll_Loop(smooth, true);
}

/// A mesh with a level for each letter.
inline LSubdivMesh Chain(const PolyMesh& base, const std::string& kinds) {
    LSubdivMesh mesh(Triangulate(base));
    for (const char kind : kinds) EXPECT_TRUE(AddLevel(mesh, kind));
    return LSubdivMesh(mesh);
}

}  // namespace VantrelSDK
