#pragma once

#include <string>

#include "minihost/graph/Scene.h"

namespace minihost {

/// The scene as text: nodes, places, numbers, connections, selection.
inline std::string Describe(Scene& scene) {
    std::string text;
    for (const NodePtr& node : scene.Nodes()) {
        const auto* dag = dynamic_cast<DagNode*>(node.get());
        text += node->type().name + " " + (dag ? dag->Path() : node->name()) + "\n";
        if (dag && dag->parent()) text += " at " + std::to_string(scene.PlaceOf(*dag)) + "\n";
        const auto slots = [&text](auto&& self, const Slot& slot) -> void {
            if (slot.source)
                text += " " + Plug(slot).Name() + " < " + Plug(*slot.source).FullName() + "\n";
            else if (slot.IsLeaf() && !slot.IsFed() &&
                     !slot.node->type().IsComputed(*slot.attribute))
                text +=
                    " " + Plug(slot).Name() + " = " + std::to_string(NumberOf(slot.value)) + "\n";
            for (const auto& part : slot.parts) self(self, *part);
        };
        for (const Slot& root : node->roots()) slots(slots, root);
    }
    for (const Selected& s : scene.selection) text += "selected " + s.node->UniqueName() + "\n";
    return text;
}

}  // namespace minihost
