#include "minihost/scene/UnknownNode.h"

namespace minihost {

UnknownLogic::UnknownLogic(Node& node) : ShapeLogic(node) {
    if (const auto& base = node.type().base; base && base->maker) base_ = base->maker(node);
}

void RegisterUnknownTypes(NodeTypes& types) {
    const auto maker = [](Node& node) { return std::make_unique<UnknownLogic>(node); };
    types.Make("unknown", 0x554e4b4e, MFn::kDependencyNode).maker = maker;
    types.Make("unknownDag", 0x554e4b44, MFn::kDagNode, "dagNode").maker = maker;
}

bool IsUnknownType(const NodeType& type) {
    return type.name == "unknown" || type.name == "unknownDag";
}

}  // namespace minihost
