#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "maya/MStatus.h"
#include "minihost/base/Object.h"
#include "minihost/graph/NodeType.h"
#include "minihost/graph/Plug.h"
#include "minihost/graph/Slot.h"

namespace minihost {

class Scene;

/// What evaluates the nodes of a type. One object a node.
class NodeLogic {
  public:
    explicit NodeLogic(Node& node) : node_(node) {}
    virtual ~NodeLogic() = default;

    /// Once the node stands in the scene with its attributes.
    virtual void PostConstructor() {}
    /// Computes a stale plug and what else it likes. kUnknownParameter leaves the value as it is.
    virtual MStatus Compute(const Plug&) { return MS::kUnknownParameter; }
    /// A plug was written or became stale. What is appended becomes stale with it.
    virtual void SetDependentsDirty(const Plug&, std::vector<Plug>&) {}
    /// Whether SetDependentsDirty wants to be called.
    virtual bool WatchesDirt() const { return false; }
    /// Whether a connection of the node's own plug may be made.
    virtual bool Allows(const Plug& /*own*/, const Plug& /*other*/, bool /*asSource*/) {
        return true;
    }
    /// Whether what the node feeds may be set by hand, until it becomes stale again.
    virtual bool YieldsToWrites() const { return false; }
    virtual void ConnectionMade(const Plug& /*own*/, const Plug& /*other*/, bool /*asSource*/) {}
    virtual void ConnectionBroken(const Plug& /*own*/, const Plug& /*other*/, bool /*asSource*/) {}

  protected:
    Node& node_;
};

/// A node of the dependency graph: values behind plugs, and a logic that computes some of them.
class Node : public Object {
  public:
    Node(Scene& scene, std::shared_ptr<const NodeType> type, std::string name);
    ~Node() override;

    MFn::Type apiType() const override { return type_->apiType; }
    const NodeType& type() const { return *type_; }
    Scene& scene() const { return scene_; }
    /// The name alone, without the path of a DAG node.
    const std::string& name() const { return name_; }
    /// A name that finds this node and no other: the path as far as it is needed.
    virtual std::string UniqueName() const { return name_; }
    /// Whether the node is in the scene: false before it is added and after it was deleted.
    bool isInScene() const { return inScene_; }
    /// Left out of saved scenes, with what is below it.
    bool isTransient = false;
    NodeLogic* logic() const { return logic_.get(); }
    template <class T>
    T* LogicAs() const {
        return dynamic_cast<T*>(logic_.get());
    }

    Slot* Root(const Attribute& attribute) { return &roots_[static_cast<size_t>(attribute.place)]; }
    std::deque<Slot>& roots() { return roots_; }
    /// The plug of an attribute by long or short name; null for a name that is none.
    Plug FindPlug(const std::string& attribute);
    Slot* FindSlot(const std::string& attribute);

    std::shared_ptr<Node> Share() { return std::static_pointer_cast<Node>(shared_from_this()); }

  private:
    friend class Scene;

    Scene& scene_;
    std::shared_ptr<const NodeType> type_;
    std::string name_;
    bool inScene_ = false;
    /// Its number in the order of arrival, from 1; kept through deletion and undo.
    std::uint64_t arrival_ = 0;
    std::deque<Slot> roots_;
    std::unique_ptr<NodeLogic> logic_;
};

using NodePtr = std::shared_ptr<Node>;

}  // namespace minihost
