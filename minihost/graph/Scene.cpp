#include "minihost/graph/Scene.h"

#include <fnmatch.h>

#include <algorithm>

#include "minihost/graph/Evaluation.h"

namespace minihost {

Scene::Scene(NodeTypes& types, Listeners& listeners) : types_(types), listeners_(listeners) {
    const auto type = std::make_shared<NodeType>("world", MTypeId(), MFn::kWorld);
    world_ = std::make_shared<DagNode>(*this, type, "");
    world_->inScene_ = true;
}

Scene::~Scene() = default;

std::string Scene::Fitting(const std::string& name) {
    std::string fitting;
    for (const char c : name)
        fitting += std::isalnum(static_cast<unsigned char>(c)) || c == ':' ? c : '_';
    if (fitting.empty() || std::isdigit(static_cast<unsigned char>(fitting[0])))
        fitting.insert(0, "_");
    return fitting;
}

NodePtr Scene::Make(const std::shared_ptr<const NodeType>& type, const std::string& name) {
    const std::string fitting = name.empty() ? type->name + "1" : Fitting(name);
    NodePtr node;
    if (type->IsDag())
        node = std::make_shared<DagNode>(*this, type, fitting);
    else
        node = std::make_shared<Node>(*this, type, fitting);
    return node;
}

void Scene::TellOfNode(const std::string& topic, const NodePtr& node) {
    listeners_.Tell({topic, node->type().name}, &node);
    listeners_.Tell({topic, ""}, &node);
}

void Scene::Add(const NodePtr& node, DagNode* parent) {
    if (node->inScene_) return;
    auto* dag = dynamic_cast<DagNode*>(node.get());
    if (dag && !parent) parent = world_.get();
    const bool isNew = node->arrival_ == 0;
    if (isNew) node->arrival_ = ++arrivals_;
    node->name_ = Unique(node->name_, *node, parent);
    if (dag) {
        dag->parent_ = parent;
        parent->children_.push_back(dag->ShareDag());
    }
    node->inScene_ = true;
    Index(node);
    ReviseScene();
    if (isNew && node->logic_) node->logic_->PostConstructor();
    TellOfNode("NodeAdded", node);
}

void Scene::Remove(const NodePtr& node) {
    if (!node->inScene_) return;
    TellOfNode("NodeRemoved", node);
    if (auto* dag = dynamic_cast<DagNode*>(node.get()); dag && dag->parent_) {
        while (!dag->children_.empty()) Reparent(*dag->children_.back(), nullptr);
        std::erase_if(dag->parent_->children_, [dag](const auto& c) { return c.get() == dag; });
    }
    std::erase_if(selection, [&node](const Selected& s) { return s.node == node; });
    Unindex(*node);
    ReviseScene();
    node->inScene_ = false;
    PropagationGuard::Bury(node);
}

void Scene::Index(const NodePtr& node) {
    byName_.emplace(node->name(), node);
    order_[node->arrival_] = node;
}

void Scene::Unindex(Node& node) {
    const auto [first, last] = byName_.equal_range(node.name());
    for (auto at = first; at != last; ++at)
        if (at->second.get() == &node) {
            byName_.erase(at);
            break;
        }
    order_.erase(node.arrival_);
}

bool Scene::IsTaken(const std::string& name, const Node& node, const DagNode* parent) const {
    const auto [first, last] = byName_.equal_range(name);
    return std::any_of(first, last, [&](const auto& entry) {
        const auto* other = dynamic_cast<const DagNode*>(entry.second.get());
        return entry.second.get() != &node && (!parent || !other || other->parent_ == parent);
    });
}

std::string Scene::Unique(const std::string& name, const Node& node, const DagNode* parent) {
    if (!IsTaken(name, node, parent)) return name;
    size_t end = name.size();
    while (end > 0 && std::isdigit(static_cast<unsigned char>(name[end - 1]))) --end;
    const std::string stem = name.substr(0, end);
    int& last = lastNumber_[stem];
    if (!IsTaken(stem + "1", node, parent)) last = 0;
    std::string unique;
    do unique = stem + std::to_string(++last);
    while (IsTaken(unique, node, parent));
    return unique;
}

NodePtr Scene::Find(const std::string& name) const {
    const size_t bar = name.rfind('|');
    const std::string last = bar == name.npos ? name : name.substr(bar + 1);
    const auto [first, end] = byName_.equal_range(last);
    NodePtr found;
    for (auto at = first; at != end; ++at) {
        if (bar != name.npos) {
            const auto* dag = dynamic_cast<const DagNode*>(at->second.get());
            if (!dag) continue;
            const std::string path = dag->Path();
            if (name[0] == '|' ? path != name : !path.ends_with("|" + name)) continue;
        }
        if (found) return nullptr;
        found = at->second;
    }
    return found;
}

std::vector<NodePtr> Scene::FindAll(const std::string& pattern) const {
    std::vector<NodePtr> found;
    const bool isPath = pattern.find('|') != pattern.npos;
    if (pattern.find_first_of("*?[") == pattern.npos && !isPath) {
        const auto [first, last] = byName_.equal_range(pattern);
        for (auto at = first; at != last; ++at) found.push_back(at->second);
        std::ranges::sort(found, {}, [](const auto& node) { return node->arrival_; });
        return found;
    }
    const std::string whole = isPath && pattern[0] != '|' ? "*|" + pattern : pattern;
    for (const auto& [place, node] : order_) {
        const auto* dag = dynamic_cast<const DagNode*>(node.get());
        if (isPath && !dag) continue;
        const std::string& name = isPath ? dag->Path() : node->name();
        if (fnmatch(whole.c_str(), name.c_str(), 0) == 0) found.push_back(node);
    }
    return found;
}

std::vector<NodePtr> Scene::Nodes() const {
    std::vector<NodePtr> nodes;
    nodes.reserve(order_.size());
    for (const auto& [place, node] : order_) nodes.push_back(node);
    return nodes;
}

std::vector<NodePtr> Scene::NodesOfType(const std::string& typeName) const {
    std::vector<NodePtr> nodes;
    for (const auto& [place, node] : order_)
        if (typeName.empty() || node->type().IsA(typeName)) nodes.push_back(node);
    return nodes;
}

std::string Scene::Rename(Node& node, const std::string& name) {
    const NodePtr self = node.Share();
    const auto* dag = dynamic_cast<DagNode*>(&node);
    const std::string unique = Unique(Fitting(name), node, dag ? dag->parent_ : nullptr);
    Unindex(node);
    node.name_ = unique;
    Index(self);
    listeners_.Tell({"Event", "NameChanged"}, &self);
    return unique;
}

int Scene::PlaceOf(const DagNode& node) const {
    const auto& siblings = node.parent_->children_;
    return static_cast<int>(
        std::ranges::find(siblings, &node, [](const auto& c) { return c.get(); }) -
        siblings.begin());
}

void Scene::Reparent(DagNode& node, DagNode* parent, int place) {
    const DagNodePtr self = node.ShareDag();
    if (!parent) parent = world_.get();
    ReviseScene();
    std::erase(node.parent_->children_, self);
    auto& siblings = parent->children_;
    const bool atEnd = place < 0 || place > static_cast<int>(siblings.size());
    siblings.insert(atEnd ? siblings.end() : siblings.begin() + place, self);
    node.parent_ = parent;
    if (IsTaken(node.name(), node, parent)) Rename(node, node.name());
    for (const char* above : {"worldMatrix", "parentMatrix"})
        if (Slot* slot = node.FindSlot(above)) MarkDirty(*slot);
    listeners_.Tell({"ParentChanged", ""}, &self);
}

std::string Scene::WhyNot(const Plug& source, const Plug& destination) const {
    const Attribute &from = *source.attribute, &to = *destination.attribute;
    if (source == destination) return "a plug cannot be connected to itself";
    if (!from.isReadable || !from.isConnectable) return source.FullName() + " is not readable";
    if (!to.isWritable || !to.isConnectable) return destination.FullName() + " is not writable";
    if (source.IsArray() || destination.IsArray())
        return "an array is connected by its elements: tell an index";
    if (!to.Accepts(from))
        return "the types of " + source.FullName() + " and " + destination.FullName() + " differ";
    NodeLogic *feeder = source.node->logic(), *fed = destination.node->logic();
    if (feeder && !feeder->Allows(source, destination, true))
        return source.node->UniqueName() + " does not allow the connection";
    if (fed && !fed->Allows(destination, source, false))
        return destination.node->UniqueName() + " does not allow the connection";
    return {};
}

void Scene::Connect(Slot& source, Slot& destination) {
    if (destination.IsFed()) return;
    PropagationGuard guard;
    destination.source = &source;
    source.destinations.push_back(&destination);
    if (destination.attribute->kind != AttributeKind::Message) {
        destination.SetClean();  // so that staleness spreads from here in any case
        MarkDirty(destination);
    }
    const Plug from(source), to(destination);
    if (to.node->logic_) to.node->logic_->ConnectionMade(to, from, false);
    if (from.node->logic_) from.node->logic_->ConnectionMade(from, to, true);
    const std::pair<Plug, Plug> both(from, to);
    listeners_.Tell({"ConnectionMade", ""}, &both);
}

void Scene::Disconnect(Slot& destination) {
    if (!destination.source) return;
    PropagationGuard guard;
    Evaluate(destination);
    ReviseScene();
    Slot& source = *destination.source;
    destination.source = nullptr;
    std::erase(source.destinations, &destination);
    const Plug from(source), to(destination);
    if (to.node->logic_) to.node->logic_->ConnectionBroken(to, from, false);
    if (from.node->logic_) from.node->logic_->ConnectionBroken(from, to, true);
    const std::pair<Plug, Plug> both(from, to);
    listeners_.Tell({"ConnectionBroken", ""}, &both);
}

std::unique_ptr<Slot> Scene::TakeElement(Slot& element) {
    Slot& array = *element.parent;
    const auto at = array.parts.begin() + element.PlaceInParent();
    std::unique_ptr<Slot> taken = std::move(*at);
    array.parts.erase(at);
    Changed(array);
    return taken;
}

void Scene::PutElement(Slot& array, std::unique_ptr<Slot> element) {
    const auto at = std::ranges::lower_bound(array.parts, element->index, {},
                                             [](const auto& e) { return e->index; });
    Slot& put = **array.parts.insert(at, std::move(element));
    Changed(put);
}

}  // namespace minihost
