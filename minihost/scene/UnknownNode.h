#pragma once

#include "minihost/dag/DagNode.h"
#include "minihost/scene/Document.h"

namespace minihost {

/// What a file says of a node whose type no module has registered: kept as it was, so that the next
/// file says it again. Such a node stands in the scene, with its name and place, as an "unknown" or
/// "unknownDag".
class UnknownLogic : public ShapeLogic {
  public:
    explicit UnknownLogic(Node& node);

    bool WatchesDirt() const override { return base_ && base_->WatchesDirt(); }
    void SetDependentsDirty(const Plug& plug, std::vector<Plug>& more) override {
        base_->SetDependentsDirty(plug, more);
    }
    MStatus Compute(const Plug& plug) override {
        return base_ ? base_->Compute(plug) : MStatus(MS::kUnknownParameter);
    }

    std::string typeName;
    MTypeId typeId;
    /// Its values, as statements.
    std::vector<SceneStatement> values;
    /// Its connections: the other node, and both plugs as the file names them. One between two
    /// unknown nodes stands with the source alone.
    struct Connection {
        bool isSource;
        std::string own;
        std::weak_ptr<Node> other;
        std::string otherPlug;
    };
    std::vector<Connection> connections;

  private:
    /// What a DAG node's place computes; null for other nodes.
    std::unique_ptr<NodeLogic> base_;
};

/// Registers "unknown" and "unknownDag".
void RegisterUnknownTypes(NodeTypes& types);
bool IsUnknownType(const NodeType& type);

}  // namespace minihost
