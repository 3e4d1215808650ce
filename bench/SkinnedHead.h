#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "minihost/deform/SkinCluster.h"
#include "minihost/graph/Modifier.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Primitives.h"

namespace minihost {

/// A sphere bound to a chain of 20 joints.
struct SkinnedHead {
    NodePtr mesh;
    std::vector<DagNodePtr> joints;
    /// Why it is not bound, else empty.
    std::string error;

    /// Of about as many vertices.
    SkinnedHead(Modifier& edits, int vertices) {
        const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(vertices))));
        mesh = CreateMesh(edits, MakeSphere(10, n, n + 1), "head").shape;
        for (int j = 0; j < 20; ++j) {
            DagNode* parent = joints.empty() ? nullptr : joints.back().get();
            joints.push_back(std::static_pointer_cast<DagNode>(edits.Create("joint", "", parent)));
            edits.Set(joints.back()->FindPlug("translateY"), j == 0 ? -10.0 : 1.0);
        }
        BindSkin(edits, joints, mesh, error);
    }
};

}  // namespace minihost
