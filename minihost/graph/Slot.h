#pragma once

#include <memory>
#include <vector>

#include "minihost/graph/Attribute.h"

namespace minihost {

class Node;

/// The place of one plug in a node: its value, whether it is stale, and its connections. An array
/// and its elements share one attribute; elements stand in the order of their logical indices.
struct Slot {
    Slot(Node* node, const Attribute* attribute, Slot* parent = nullptr, int index = -1);
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    bool IsArray() const { return attribute->isArray && index < 0; }
    bool IsLeaf() const { return !IsArray() && parts.empty() && !attribute->IsCompound(); }
    /// The element at a logical index, null where there is none.
    Slot* FindElement(int logical) const;
    /// The same, made where there is none. `logical` is 0 or more.
    Slot* Element(int logical);
    /// This slot's place in an array or compound, -1 for the root of a node.
    int PlaceInParent() const;
    /// The connection that feeds this slot, its own or that of a compound it is in; null for none.
    Slot* Source() const;
    bool IsFed() const { return Source() != nullptr; }
    void ForEachLeaf(auto&& act) {
        if (IsLeaf()) return act(*this);
        for (const auto& part : parts) part->ForEachLeaf(act);
    }
    void SetClean() {
        ForEachLeaf([](Slot& leaf) { leaf.dirty = false; });
    }

    Node* node;
    const Attribute* attribute;
    Slot* parent;
    /// The logical index of an element, -1 for everything else.
    int index;
    bool dirty = false, computing = false;
    Datum value;
    Slot* source = nullptr;
    std::vector<Slot*> destinations;
    /// Children of a compound by place; elements of an array by logical index, rising.
    std::vector<std::unique_ptr<Slot>> parts;
};

}  // namespace minihost
