#include "minihost/graph/Slot.h"

#include <algorithm>

#include "minihost/graph/Node.h"

namespace minihost {

Slot::Slot(Node* n, const Attribute* a, Slot* p, int i)
    : node(n), attribute(a), parent(p), index(i) {
    if (IsArray()) return;
    parts.reserve(a->children.size());
    for (const auto& child : a->children)
        parts.push_back(std::make_unique<Slot>(n, child.get(), this));
    if (!parts.empty()) return;
    value = a->defaultValue;
    dirty = n->type().IsComputed(*a);
}

Slot* Slot::FindElement(int logical) const {
    const auto at =
        std::ranges::lower_bound(parts, logical, {}, [](const auto& e) { return e->index; });
    return at != parts.end() && (*at)->index == logical ? at->get() : nullptr;
}

Slot* Slot::Element(int logical) {
    const auto at =
        std::ranges::lower_bound(parts, logical, {}, [](const auto& e) { return e->index; });
    if (at != parts.end() && (*at)->index == logical) return at->get();
    return parts.insert(at, std::make_unique<Slot>(node, attribute, this, logical))->get();
}

int Slot::PlaceInParent() const {
    if (!parent) return -1;
    if (index < 0) return attribute->place;
    const auto at =
        std::ranges::lower_bound(parent->parts, index, {}, [](const auto& e) { return e->index; });
    return static_cast<int>(at - parent->parts.begin());
}

Slot* Slot::Source() const {
    if (source) return source;
    // A compound's connection feeds its children, a child at a time; arrays are not fed as a whole.
    if (!parent || index >= 0) return nullptr;
    Slot* above = parent->Source();
    return above && static_cast<size_t>(attribute->place) < above->parts.size()
               ? above->parts[static_cast<size_t>(attribute->place)].get()
               : nullptr;
}

}  // namespace minihost
