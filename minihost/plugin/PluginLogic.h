#pragma once

#include "maya/MPxNode.h"
#include "minihost/dag/DagNode.h"

namespace minihost {

/// Hands the host's calls of a node on to the object that a module made for it.
class PluginLogic : public ShapeLogic {
  public:
    PluginLogic(Node& node, void* (*creator)());
    ~PluginLogic() override;

    MPxNode* user() const { return user_.get(); }
    Node& node() const { return node_; }

    void PostConstructor() override;
    MStatus Compute(const Plug& plug) override;
    bool WatchesDirt() const override { return user_ != nullptr; }
    void SetDependentsDirty(const Plug& plug, std::vector<Plug>& more) override;
    void ConnectionMade(const Plug& own, const Plug& other, bool asSource) override;
    void ConnectionBroken(const Plug& own, const Plug& other, bool asSource) override;
    bool Allows(const Plug& own, const Plug& other, bool asSource) override;
    MBoundingBox Bounds() override;

  private:
    /// What a DAG node's place computes; null for other nodes.
    std::unique_ptr<NodeLogic> base_;
    std::unique_ptr<MPxNode> user_;
};

/// While one lives, MPxNode::addAttribute and its kin work on a type.
class TypeInMaking {
  public:
    explicit TypeInMaking(NodeType& type);
    ~TypeInMaking();
    TypeInMaking(const TypeInMaking&) = delete;
    TypeInMaking& operator=(const TypeInMaking&) = delete;

    /// Null outside `initialize`.
    static NodeType* current();

  private:
    NodeType* before_;
};

}  // namespace minihost
