#pragma once

#include <string>
#include <vector>

#include "minihost/graph/Modifier.h"

namespace minihost {

/// The item of a target at its full weight.
inline constexpr int kFullTarget = 6000;

/// Blends meshes into `base`: a target and a weight for each of `targets`, in order. Null with the
/// reason in `error`, such as a target with another number of vertices.
NodePtr CreateBlendShape(Modifier& edits, const std::vector<NodePtr>& targets, const NodePtr& base,
                         std::string& error, const std::string& name = {});

/// The mesh nodes that feed a blend shape's targets, by target; null for those that keep their
/// points themselves.
std::vector<NodePtr> TargetsOf(const NodePtr& blendShape);

}  // namespace minihost
