#pragma once

#include <string>
#include <vector>

#include "minihost/dag/DagNode.h"
#include "minihost/graph/Modifier.h"

namespace minihost {

/// How a mesh is bound to joints.
struct SkinBinding {
    /// How many joints a vertex follows at most; 0 for no limit.
    int maxInfluences = 5;
    /// How fast a joint's hold falls with distance: weights are as distance to the minus `dropoff`.
    double dropoff = 4;
    std::string name;
};

/// Binds a mesh to joints as they stand, in the order given. Each vertex follows the joints whose
/// bones are nearest, a bone reaching from a joint to those of the joints below it that are bound
/// too. Null with the reason in `error`.
NodePtr BindSkin(Modifier& edits, const std::vector<DagNodePtr>& joints, const NodePtr& mesh,
                 std::string& error, const SkinBinding& binding = {});

/// The joints of a skin cluster by the logical index of its matrix; null where none is connected.
std::vector<NodePtr> JointsOf(const NodePtr& skin);

}  // namespace minihost
