#pragma once

#include <array>
#include <memory>
#include <string>

#include "minihost/graph/Attribute.h"

namespace minihost {

class Node;
struct Slot;

/// Names one place of a node: an attribute and the logical indices of the arrays on the way to it.
/// It does not make the elements that it names; writing through it does.
struct Plug {
    static constexpr int kMaxDepth = 4;

    Plug() = default;
    Plug(std::shared_ptr<Node> n, const Attribute* a) : node(std::move(n)), attribute(a) {}
    explicit Plug(const Slot& slot);

    bool IsNull() const { return !node || !attribute; }
    bool operator==(const Plug& other) const;
    /// Whether it names an array as a whole, or an element of one.
    bool IsArray() const;
    bool IsElement() const;
    /// The logical index of an element, -1 for everything else.
    int LogicalIndex() const;
    /// The slot, null where an element on the way does not exist, or an index is missing.
    Slot* Find() const;
    /// The slot to read: an element that the node computes is made when it is missing, others are
    /// not.
    Slot* FindToRead() const;
    /// The slot, with the elements on the way made. Null for an index that is missing.
    Slot* Make() const;

    Plug Child(int place) const;
    Plug Element(int logical) const;
    /// The compound or the array that this is a part of; null for a root.
    Plug Parent() const;

    /// "translateX", "input[2].inputGeometry", "tx" in short. `full`: with the compounds before it.
    std::string Name(bool full = true, bool shortNames = false) const;
    /// With the node in front: "head.translateX".
    std::string FullName() const;

    std::shared_ptr<Node> node;
    const Attribute* attribute = nullptr;
    std::array<int, kMaxDepth> indices{};
    int depth = 0;

  private:
    template <class Step>
    Slot* Walk(Step step) const;
};

}  // namespace minihost
