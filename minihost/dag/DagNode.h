#pragma once

#include "maya/MBoundingBox.h"
#include "maya/MMatrix.h"
#include "minihost/graph/Node.h"

namespace minihost {

class DagNode;
using DagNodePtr = std::shared_ptr<DagNode>;

/// A node of the hierarchy: a transform, or a shape below one. It stands in one place only; there
/// is no instancing.
class DagNode : public Node {
  public:
    using Node::Node;

    DagNode* parent() const { return parent_; }
    const std::vector<DagNodePtr>& children() const { return children_; }
    bool IsShape() const { return type().IsShape(); }
    /// Names from the root: "|group|head".
    std::string Path() const;
    /// The shortest end of the path that no other node has.
    std::string UniqueName() const override;
    /// Whether this is `node` or above it.
    bool IsAbove(const DagNode& node) const;
    /// The first shape below a transform, null for none; a shape is its own.
    DagNode* Shape();

    /// The matrix of this node alone, and with all that is above it.
    MMatrix Matrix();
    MMatrix WorldMatrix();
    /// What the node and all below it occupy, in the coordinates of its parent.
    MBoundingBox Bounds();

    DagNodePtr ShareDag() { return std::static_pointer_cast<DagNode>(shared_from_this()); }

  private:
    friend class Scene;

    DagNode* parent_ = nullptr;
    std::vector<DagNodePtr> children_;
};

/// What shapes tell of themselves beside their plugs.
class ShapeLogic : public NodeLogic {
  public:
    using NodeLogic::NodeLogic;
    /// In the shape's own coordinates.
    virtual MBoundingBox Bounds() { return {}; }
};

}  // namespace minihost
