#pragma once

#include "maya/MPxNode.h"
#include "maya/MPxSurfaceShapeUI.h"
#include "minihost/dag/DagNode.h"

namespace minihost {

/// Hands the host's calls of a node on to the object that a module made for it.
class PluginLogic : public ShapeLogic {
  public:
    /// `lookCreator` makes what draws a shape; null where the module draws nothing.
    PluginLogic(Node& node, void* (*creator)(), void* (*lookCreator)() = nullptr);
    ~PluginLogic() override;

    MPxNode* user() const { return user_.get(); }
    Node& node() const { return node_; }
    /// What draws the shape, made when it is asked for; null where nothing does.
    MPxSurfaceShapeUI* Look();

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
    void* (*lookCreator_)();
    std::unique_ptr<MPxSurfaceShapeUI> look_;
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
