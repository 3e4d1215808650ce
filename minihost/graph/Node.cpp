#include "minihost/graph/Node.h"

namespace minihost {

Node::Node(Scene& scene, std::shared_ptr<const NodeType> type, std::string name)
    : scene_(scene), type_(std::move(type)), name_(std::move(name)) {
    for (const AttributePtr& attribute : type_->attributes())
        roots_.emplace_back(this, attribute.get());
    if (type_->maker) logic_ = type_->maker(*this);
}

Node::~Node() = default;

Plug Node::FindPlug(const std::string& attribute) {
    const Attribute* found = type_->Find(attribute);
    return found ? Plug(Share(), found) : Plug();
}

Slot* Node::FindSlot(const std::string& attribute) {
    const Plug plug = FindPlug(attribute);
    return plug.IsNull() ? nullptr : plug.Find();
}

}  // namespace minihost
