#include "minihost/graph/Plug.h"

#include <algorithm>

#include "minihost/graph/Node.h"
#include "minihost/graph/Slot.h"

namespace minihost {

Plug::Plug(const Slot& slot)
    : node(std::static_pointer_cast<Node>(slot.node->shared_from_this())),
      attribute(slot.attribute) {
    for (const Slot* s = &slot; s; s = s->parent)
        if (s->index >= 0 && depth < kMaxDepth) indices[static_cast<size_t>(depth++)] = s->index;
    std::reverse(indices.begin(), indices.begin() + depth);
}

bool Plug::operator==(const Plug& other) const {
    return node == other.node && attribute == other.attribute && depth == other.depth &&
           std::equal(indices.begin(), indices.begin() + depth, other.indices.begin());
}

bool Plug::IsElement() const {
    return attribute && attribute->isArray && depth == attribute->ArrayDepth();
}

bool Plug::IsArray() const {
    return attribute && attribute->isArray && !IsElement();
}

int Plug::LogicalIndex() const {
    return IsElement() ? indices[static_cast<size_t>(depth - 1)] : -1;
}

template <class Step>
Slot* Plug::Walk(Step step) const {
    if (IsNull()) return nullptr;
    std::array<const Attribute*, 16> way;
    size_t n = 0;
    for (const Attribute* a = attribute; a && n < way.size(); a = a->parent) way[n++] = a;
    Slot* slot = node->Root(*way[n - 1]);
    int used = 0;
    while (slot) {
        if (slot->IsArray()) {
            if (used == depth) return slot->attribute == attribute ? slot : nullptr;
            slot = step(*slot, indices[static_cast<size_t>(used++)]);
        } else if (n == 1) {
            break;
        } else {
            slot = slot->parts[static_cast<size_t>(way[--n - 1]->place)].get();
        }
    }
    return slot;
}

Slot* Plug::Find() const {
    return Walk([](Slot& array, int index) { return array.FindElement(index); });
}

Slot* Plug::Make() const {
    return Walk([](Slot& array, int index) { return array.Element(index); });
}

Slot* Plug::FindToRead() const {
    Slot* slot = Find();
    return !slot && !IsNull() && node->type().IsComputed(*attribute) ? Make() : slot;
}

Plug Plug::Child(int place) const {
    Plug child = *this;
    child.attribute = attribute->children[static_cast<size_t>(place)].get();
    return child;
}

Plug Plug::Element(int logical) const {
    Plug element = *this;
    if (depth < kMaxDepth) element.indices[static_cast<size_t>(element.depth++)] = logical;
    return element;
}

Plug Plug::Parent() const {
    Plug up = *this;
    if (IsElement())
        --up.depth;
    else
        up.attribute = attribute ? attribute->parent : nullptr;
    if (!up.attribute) up.node = nullptr;
    return up;
}

std::string Plug::Name(bool full, bool shortNames) const {
    if (IsNull()) return {};
    std::string name = shortNames ? attribute->shortName : attribute->longName;
    if (attribute->isArray) {
        const int before = attribute->ArrayDepth() - 1;
        name += depth > before ? "[" + std::to_string(indices[static_cast<size_t>(before)]) + "]"
                               : "[]";
    }
    // The compound of a plain pair or triple says nothing that the child does not, but where it has
    // an index on its way.
    const Attribute* up = attribute->parent;
    if (!full || !up || (up->kind != AttributeKind::Compound && up->ArrayDepth() == 0)) return name;
    Plug parent = *this;
    parent.attribute = up;
    return parent.Name(full, shortNames) + "." + name;
}

std::string Plug::FullName() const {
    return IsNull() ? "" : node->UniqueName() + "." + Name();
}

}  // namespace minihost
