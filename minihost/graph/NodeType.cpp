#include "minihost/graph/NodeType.h"

#include <algorithm>

namespace minihost {
NodeType::NodeType(std::string typeName, MTypeId typeId, MFn::Type api,
                   std::shared_ptr<const NodeType> baseType)
    : name(std::move(typeName)), id(typeId), apiType(api), base(std::move(baseType)) {
    if (!base) return;
    attributes_ = base->attributes_;
    byName_ = base->byName_;
    affects_ = base->affects_;
    computed_ = base->computed_;
    maker = base->maker;
    beforeDelete = base->beforeDelete;
}

bool NodeType::IndexNames(Attribute& attribute) {
    if (byName_.contains(attribute.longName) || byName_.contains(attribute.shortName)) return false;
    byName_[attribute.longName] = byName_[attribute.shortName] = &attribute;
    return std::ranges::all_of(attribute.children,
                               [this](const auto& child) { return IndexNames(*child); });
}

Attribute* NodeType::Add(AttributePtr attribute) {
    const auto before = byName_;
    if (!IndexNames(*attribute)) {
        byName_ = before;
        return nullptr;
    }
    Number(*attribute);
    attribute->place = static_cast<int>(attributes_.size());
    attributes_.push_back(std::move(attribute));
    return attributes_.back().get();
}

void NodeType::Affects(Attribute* input, Attribute* output) {
    auto& affected = affects_[static_cast<size_t>(input->id)];
    if (std::ranges::count(affected, output) == 0) affected.push_back(output);
    SetComputed(*output);
}

void NodeType::Number(Attribute& attribute) {
    attribute.id = static_cast<int>(affects_.size());
    affects_.emplace_back();
    computed_.push_back(false);
    for (const auto& child : attribute.children) Number(*child);
}

void NodeType::SetComputed(const Attribute& attribute) {
    computed_[static_cast<size_t>(attribute.id)] = true;
    for (const auto& child : attribute.children) SetComputed(*child);
}

void NodeType::Affects(const std::vector<const char*>& inputs,
                       const std::vector<const char*>& outputs) {
    for (const char* input : inputs)
        for (const char* output : outputs) Affects(Find(input), Find(output));
}

Attribute* NodeType::Find(const std::string& attributeName) const {
    const auto found = byName_.find(attributeName);
    return found == byName_.end() ? nullptr : found->second;
}

bool NodeType::IsA(const std::string& typeName) const {
    return name == typeName || (base && base->IsA(typeName));
}

bool NodeTypes::Register(NodeTypePtr type) {
    if (byName_.contains(type->name) || (type->id && byId_.contains(type->id.id()))) return false;
    byName_[type->name] = type;
    if (type->id) byId_[type->id.id()] = type;
    return true;
}

NodeType& NodeTypes::Make(const std::string& name, unsigned id, MFn::Type apiType,
                          const std::string& base) {
    auto type =
        std::make_shared<NodeType>(name, MTypeId(id), apiType, base.empty() ? nullptr : Find(base));
    Register(type);
    return *type;
}

bool NodeTypes::Unregister(MTypeId id) {
    const auto found = byId_.find(id.id());
    if (found == byId_.end()) return false;
    byName_.erase(found->second->name);
    byId_.erase(found);
    return true;
}

NodeTypePtr NodeTypes::Find(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
}

NodeTypePtr NodeTypes::Find(MTypeId id) const {
    const auto found = byId_.find(id.id());
    return found == byId_.end() ? nullptr : found->second;
}

std::vector<std::string> NodeTypes::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, type] : byName_) names.push_back(name);
    std::ranges::sort(names);
    return names;
}

}  // namespace minihost
