#pragma once

#include <functional>
#include <unordered_map>

#include "minihost/dag/DagNode.h"
#include "minihost/graph/Messages.h"
#include "minihost/graph/Node.h"

namespace minihost {

/// What is selected: a node, and of its geometry all or some components.
struct Selected {
    NodePtr node;
    /// No elements and not complete: the node as a whole.
    Component component{MFn::kInvalid, false, {}};
    bool operator==(const Selected&) const = default;
};

/// The nodes that there are, by name, with the hierarchy and the connections between them. Its
/// edits are the primitive ones, done at once and known to no undo queue; see Modifier.
class Scene {
  public:
    Scene(NodeTypes& types, Listeners& listeners);
    ~Scene();

    NodeTypes& types() { return types_; }
    Listeners& listeners() { return listeners_; }
    /// The root of the hierarchy, which has no name and is never listed.
    DagNode& world() { return *world_; }

    /// A new node, not in the scene yet. `name` empty: from the type. It is made to fit (letters
    /// that no name has become "_") and unique by a number behind it when it is added.
    NodePtr Make(const std::shared_ptr<const NodeType>& type, const std::string& name);
    /// Puts a node into the scene; a DAG node below `parent`, null for the world. Tells listeners
    /// ("NodeAdded", type) after the node's own PostConstructor when it is there for the first
    /// time.
    void Add(const NodePtr& node, DagNode* parent = nullptr);
    /// Takes a node out, whose connections were cut before. Children that it still has go to the
    /// world.
    void Remove(const NodePtr& node);

    /// By name, path or end of a path. Null where there is none, or more than one.
    NodePtr Find(const std::string& name) const;
    /// All that a name fits; "*" and "?" stand for letters.
    std::vector<NodePtr> FindAll(const std::string& pattern) const;
    /// In the order in which they came.
    std::vector<NodePtr> Nodes() const;
    /// Nodes whose type is `typeName` or built on it; empty for all.
    std::vector<NodePtr> NodesOfType(const std::string& typeName) const;
    int count() const { return static_cast<int>(order_.size()); }

    /// Gives a node a name, with a number behind it where it is taken; what it came to.
    std::string Rename(Node& node, const std::string& name);
    /// The place of a DAG node below another (null: the world), at the end or at a place.
    void Reparent(DagNode& node, DagNode* parent, int place = -1);
    int PlaceOf(const DagNode& node) const;

    /// Why two plugs cannot be connected; empty where they can. The destination may be connected.
    std::string WhyNot(const Plug& source, const Plug& destination) const;
    /// Nothing where the destination is fed. Tells staleness first, then both nodes.
    void Connect(Slot& source, Slot& destination);
    /// The destination keeps the value it had. Nothing where it has no connection. Tells both
    /// nodes. Its element stays where it is.
    void Disconnect(Slot& destination);
    /// Takes an element out of its array; it and its parts must not be connected.
    std::unique_ptr<Slot> TakeElement(Slot& element);
    /// Puts it back.
    void PutElement(Slot& array, std::unique_ptr<Slot> element);

    std::vector<Selected> selection;

    /// A name as nodes may have it.
    static std::string Fitting(const std::string& name);

  private:
    bool IsTaken(const std::string& name, const Node& node, const DagNode* parent) const;
    std::string Unique(const std::string& name, const Node& node, const DagNode* parent);
    void TellOfNode(const std::string& topic, const NodePtr& node);
    void Index(const NodePtr& node);
    void Unindex(Node& node);

    NodeTypes& types_;
    Listeners& listeners_;
    std::unordered_multimap<std::string, NodePtr> byName_;
    std::unordered_map<std::string, int> lastNumber_;
    std::map<std::uint64_t, NodePtr> order_;
    std::uint64_t arrivals_ = 0;
    DagNodePtr world_;
};

}  // namespace minihost
