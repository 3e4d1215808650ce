#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "maya/MFn.h"
#include "maya/MTypeId.h"
#include "minihost/graph/Attribute.h"

namespace minihost {

class Modifier;
class Node;
class NodeLogic;

/// A kind of node: its name, its attributes in order, and what makes its nodes work. A type has the
/// attributes of its base first.
class NodeType {
  public:
    using Maker = std::function<std::unique_ptr<NodeLogic>(Node&)>;

    NodeType(std::string name, MTypeId id, MFn::Type apiType,
             std::shared_ptr<const NodeType> base = nullptr);

    /// Adds an attribute, after those of the base. Null where its long or short name, or a child's,
    /// is taken.
    Attribute* Add(AttributePtr attribute);
    /// What depends on what; both are attributes of this type or its bases, children included.
    void Affects(Attribute* input, Attribute* output);
    /// The same by long names.
    void Affects(const std::vector<const char*>& inputs, const std::vector<const char*>& outputs);

    /// By long or short name, at any depth; null for a name that is none.
    Attribute* Find(const std::string& name) const;
    /// All of them, those of the bases first.
    const std::vector<AttributePtr>& attributes() const { return attributes_; }
    /// What becomes stale with an attribute of this type.
    const std::vector<Attribute*>& AffectedBy(const Attribute& attribute) const {
        return affects_[static_cast<size_t>(attribute.id)];
    }
    /// Whether an attribute, or the compound that it is in, is a result of the node's compute.
    bool IsComputed(const Attribute& attribute) const {
        return computed_[static_cast<size_t>(attribute.id)];
    }
    bool IsA(const std::string& typeName) const;
    bool IsDag() const { return MFn::Is(apiType, MFn::kDagNode); }
    bool IsShape() const { return MFn::Is(apiType, MFn::kShape); }

    std::string name;
    MTypeId id;
    MFn::Type apiType;
    std::shared_ptr<const NodeType> base;
    /// Makes what evaluates a node, null for a node that only holds values.
    Maker maker;
    /// Mends what is around a node before an edit deletes it; null for nothing to do.
    std::function<void(Modifier&, Node&)> beforeDelete;
    /// Which module registered the type, null for the host's own.
    const void* owner = nullptr;
    /// Whether createNode may make one.
    bool isAbstract = false;

  private:
    bool IndexNames(Attribute& attribute);
    void Number(Attribute& attribute);
    void SetComputed(const Attribute& attribute);

    std::vector<AttributePtr> attributes_;
    std::unordered_map<std::string, Attribute*> byName_;
    std::vector<std::vector<Attribute*>> affects_;
    std::vector<char> computed_;
};

using NodeTypePtr = std::shared_ptr<NodeType>;

/// The node types that there are, by name and by number.
class NodeTypes {
  public:
    /// False where the name or the number is taken.
    bool Register(NodeTypePtr type);
    /// The built-in type, made and registered; for set-up code, where names are known to be free.
    NodeType& Make(const std::string& name, unsigned id, MFn::Type apiType,
                   const std::string& base = "dependNode");
    bool Unregister(MTypeId id);
    NodeTypePtr Find(const std::string& name) const;
    NodeTypePtr Find(MTypeId id) const;
    std::vector<std::string> Names() const;

  private:
    std::unordered_map<std::string, NodeTypePtr> byName_;
    std::unordered_map<unsigned, NodeTypePtr> byId_;
};

}  // namespace minihost
