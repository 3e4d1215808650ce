#include "minihost/scene/SceneWriter.h"

#include <unordered_map>
#include <unordered_set>

#include "minihost/scene/DataForms.h"
#include "minihost/scene/UnknownNode.h"

namespace minihost {
namespace {

class Writer {
  public:
    Writer(Host& host, SceneForm form) : host_(host), form_(form), out_(HeaderOf(form)) {}

    std::string Write() {
        Put("playback", kUnitNames[MTime::uiUnit()], host_.playback.minTime(),
            host_.playback.maxTime());
        const std::vector<NodePtr> nodes = host_.scene.Nodes();
        for (const NodePtr& node : nodes) WriteInPlace(*node);
        for (const NodePtr& node : order_) WriteConnections(*node);
        return std::move(out_);
    }

  private:
    template <class... W>
    void Put(const char* keyword, W&&... words) {
        SceneStatement statement;
        statement.Add(keyword);
        (statement.Add(std::forward<W>(words)), ...);
        Put(statement);
    }
    void Put(const SceneStatement& statement) { AppendStatement(out_, form_, statement); }

    static std::string NameOf(const Node& node) {
        const auto* dag = dynamic_cast<const DagNode*>(&node);
        return dag ? dag->Path() : node.name();
    }

    /// Writes a node, with those above it and the siblings before each of these first.
    void WriteInPlace(Node& node) {
        if (written_.contains(&node)) return;
        auto* dag = dynamic_cast<DagNode*>(&node);
        std::vector<DagNode*> chain;
        for (DagNode* up = dag; up && up->parent() && !written_.contains(up); up = up->parent())
            chain.push_back(up);
        if (!dag) WriteNode(node);
        for (; !chain.empty(); chain.pop_back()) {
            const auto& siblings = chain.back()->parent()->children();
            size_t& next = nextChild_[chain.back()->parent()];
            while (!written_.contains(chain.back())) WriteNode(*siblings[next++]);
        }
    }

    /// Whether a node, or one above it, is not to be saved.
    static bool IsLeftOut(const Node& node) {
        if (node.isTransient) return true;
        const auto* dag = dynamic_cast<const DagNode*>(&node);
        return dag && dag->parent() && IsLeftOut(*dag->parent());
    }

    void WriteNode(Node& node) {
        written_.insert(&node);
        if (IsLeftOut(node)) return;
        order_.push_back(node.Share());
        const auto* unknown = node.LogicAs<UnknownLogic>();
        const auto id = unknown ? unknown->typeId : node.type().id;
        Put(host_.IsDefault(node) ? "default" : "node",
            unknown ? unknown->typeName : node.type().name, static_cast<double>(id.id()),
            NameOf(node));
        if (unknown)
            for (const SceneStatement& value : unknown->values) Put(value);
        else
            for (Slot& root : node.roots()) WriteSlot(root);
    }

    static bool IsKept(const Slot& slot) {
        return slot.attribute->isStorable && slot.attribute->kind != AttributeKind::Message &&
               !slot.node->type().IsComputed(*slot.attribute);
    }

    /// Whether anything of the slot was written.
    bool WriteSlot(Slot& slot) {
        if (!IsKept(slot)) return false;
        if (slot.IsArray()) return WriteArray(slot);
        if (slot.IsLeaf()) return WriteLeaf(slot);
        if (IsPlain(slot)) return WriteNumbers(slot);
        bool any = false;
        for (const auto& part : slot.parts) any |= WriteSlot(*part);
        return any;
    }

    /// Whether a compound has numbers only, all of them its own.
    static bool IsPlain(Slot& slot) {
        bool plain = true;
        slot.ForEachLeaf([&plain](const Slot& leaf) {
            plain &= leaf.attribute->IsNumber() && IsKept(leaf) && !leaf.IsFed();
        });
        return plain;
    }
    /// Whether a reader has the value without being told.
    bool IsAsMade(const Slot& leaf) const {
        return SameValue(leaf.value, leaf.attribute->defaultValue) && !host_.StartsOtherwise(leaf);
    }

    bool WriteNumbers(Slot& slot) {
        bool asMade = true;
        SceneStatement statement;
        statement.Add("set");
        statement.Add(Plug(slot).Name());
        slot.ForEachLeaf([&](const Slot& leaf) {
            asMade &= IsAsMade(leaf);
            statement.Add(NumberOf(leaf.value));
        });
        if (!asMade) Put(statement);
        return !asMade;
    }

    bool WriteLeaf(const Slot& leaf) {
        if (leaf.IsFed() || IsAsMade(leaf)) return false;
        const std::string name = Plug(leaf).Name();
        if (const double* number = std::get_if<double>(&leaf.value)) {
            Put("set", name, *number);
            return true;
        }
        const auto* data = std::get_if<std::shared_ptr<Data>>(&leaf.value);
        if (!data || !*data) {
            Put("set", name, "none");
            return true;
        }
        const DataForm* form = DataFormOf((*data)->dataType());
        if (!form) return false;
        SceneStatement statement;
        for (const std::string& word : {std::string("set"), name, std::string(form->name)})
            statement.Add(word);
        form->write(**data, form_, statement);
        Put(statement);
        return true;
    }

    /// All elements are told, also those that say nothing else.
    bool WriteArray(Slot& array) {
        std::vector<int> bare, numbered;
        std::vector<double> numbers;
        for (const auto& element : array.parts) {
            if (element->IsLeaf() && element->attribute->IsNumber() && !element->IsFed()) {
                numbered.push_back(element->index);
                numbers.push_back(NumberOf(element->value));
            } else if (!WriteSlot(*element)) {
                bare.push_back(element->index);
            }
        }
        std::string name = Plug(array).Name();
        name.resize(name.size() - 2);  // "[]"
        if (!numbered.empty()) Put("elements", name, std::move(numbered), std::move(numbers));
        if (!bare.empty()) Put("elements", name, std::move(bare));
        return !array.parts.empty();
    }

    void WriteConnections(Node& node) {
        for (Slot& root : node.roots()) WriteConnections(root);
        const auto* unknown = node.LogicAs<UnknownLogic>();
        if (!unknown) return;
        for (const auto& [isSource, own, other, otherPlug] : unknown->connections) {
            const NodePtr there = other.lock();
            if (!there || !there->isInScene()) continue;
            if (isSource)
                Put("connect", NameOf(node), own, NameOf(*there), otherPlug);
            else
                Put("connect", NameOf(*there), otherPlug, NameOf(node), own);
        }
    }
    void WriteConnections(const Slot& slot) {
        for (const Slot* to : slot.destinations)
            if (!IsLeftOut(*to->node))
                Put("connect", NameOf(*slot.node), Plug(slot).Name(), NameOf(*to->node),
                    Plug(*to).Name());
        for (const auto& part : slot.parts) WriteConnections(*part);
    }

    Host& host_;
    SceneForm form_;
    std::string out_;
    std::vector<NodePtr> order_;
    std::unordered_set<const Node*> written_;
    std::unordered_map<const DagNode*, size_t> nextChild_;
};

}  // namespace

std::string WriteScene(Host& host, SceneForm form) {
    return Writer(host, form).Write();
}

}  // namespace minihost
