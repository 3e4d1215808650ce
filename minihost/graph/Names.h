#pragma once

#include <string>
#include <vector>

#include "minihost/graph/Scene.h"

namespace minihost {

/// What a name in a script means: nodes, of one node a plug, or of one geometry components.
struct Named {
    NodePtr node;
    Plug plug;
    Component component{MFn::kInvalid, false, {}};
    bool HasComponent() const { return component.kind != MFn::kInvalid; }
};

/// All that a name fits: "head", "he*", "|group|head", "head.tx", "head.f[3]", "head.vtx[0:7]",
/// "head.f[*]". Empty where there is nothing, and for a name that is none.
std::vector<Named> FindNamed(Scene& scene, const std::string& name);
/// The plug of a name "node.attribute", with elements as "a[3].b"; null where there is none, with
/// the reason in `error`.
Plug FindPlugNamed(Scene& scene, const std::string& name, std::string* error = nullptr);
/// The plug of a node by the part of a name behind the node; null where there is none.
Plug PlugOfNode(const NodePtr& node, const std::string& attribute);
/// A component in words, a range a word: "head.f[0:5]", "head.f[9]".
std::vector<std::string> ComponentNames(const Node& node, const Component& component);

}  // namespace minihost
