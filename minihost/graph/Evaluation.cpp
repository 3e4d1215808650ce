#include "minihost/graph/Evaluation.h"

#include <deque>

#include "minihost/graph/Node.h"

namespace minihost {
namespace {

struct Graveyard {
    int walking = 0;
    std::vector<std::unique_ptr<Slot>> slots;
    std::vector<std::shared_ptr<Object>> objects;
};

Graveyard& Graves() {
    static Graveyard graves;
    return graves;
}

/// One spread of staleness, breadth first, without recursion over the length of a chain. A node's
/// logic may write other plugs meanwhile: that is a spread of its own, done before this one goes
/// on.
class Spread {
  public:
    Spread() : queue_(Queue()) {
        queue_.clear();
        ReviseScene();
    }
    ~Spread() { --Depth(); }

    void Start(Slot& slot) { queue_.push_back(&slot); }
    void Mark(Slot& slot) {
        bool any = false;
        slot.ForEachLeaf([&any](Slot& leaf) {
            any |= !leaf.dirty;
            leaf.dirty = true;
        });
        if (any) queue_.push_back(&slot);
    }
    void Run() {
        for (size_t i = 0; i < queue_.size(); ++i) Visit(*queue_[i]);
    }

  private:
    // A queue a depth of nesting, kept from spread to spread: a write allocates nothing.
    static int& Depth() {
        static int depth = 0;
        return depth;
    }
    static std::vector<Slot*>& Queue() {
        static std::deque<std::vector<Slot*>> queues;
        const size_t at = static_cast<size_t>(Depth()++);
        while (queues.size() <= at) queues.emplace_back();
        return queues[at];
    }

    void Visit(Slot& slot) {
        if (!slot.IsLeaf()) slot.ForEachLeaf([this, &slot](Slot& leaf) { Notify(leaf, &slot); });
        Notify(slot, nullptr);
        for (Slot* up = slot.parent; up; up = up->parent)
            if (!up->IsArray()) Notify(*up, nullptr);
        Feed(slot);
    }

    /// Tells the node of a slot, and marks what it affects there. `within`: the slot that is being
    /// visited, when this is a part of it.
    void Notify(Slot& slot, const Slot* within) {
        Node& node = *slot.node;
        if (NodeLogic* logic = node.logic(); logic && logic->WatchesDirt()) {
            std::vector<Plug> more;
            logic->SetDependentsDirty(Plug(slot), more);
            for (const Plug& plug : more)
                if (Slot* target = plug.Find(); target && target != within) Mark(*target);
        }
        for (const Attribute* output : node.type().AffectedBy(*slot.attribute))
            MarkAll(*node.Root(*output->Root()), *output);
    }

    /// Marks all slots of an attribute at and below a slot.
    void MarkAll(Slot& slot, const Attribute& attribute) {
        if (slot.attribute == &attribute && !slot.IsArray()) return Mark(slot);
        if (slot.IsArray()) {
            for (const auto& element : slot.parts) MarkAll(*element, attribute);
            return;
        }
        const Attribute* next = &attribute;
        while (next->parent && next->parent != slot.attribute) next = next->parent;
        if (next->parent) MarkAll(*slot.parts[static_cast<size_t>(next->place)], attribute);
    }

    /// Marks what the slot, its parts and the compounds around it are connected to.
    void Feed(Slot& slot) {
        FeedParts(slot);
        std::vector<int> way;
        for (Slot* s = &slot; s->parent && !s->parent->IsArray(); s = s->parent) {
            way.push_back(s->PlaceInParent());
            for (Slot* target : s->parent->destinations) {
                if (target->attribute->kind == AttributeKind::Message) continue;
                for (auto place = way.rbegin(); place != way.rend(); ++place)
                    target = target->parts[static_cast<size_t>(*place)].get();
                Mark(*target);
            }
        }
    }
    void FeedParts(Slot& slot) {
        for (Slot* target : slot.destinations)
            if (target->attribute->kind != AttributeKind::Message) Mark(*target);
        for (const auto& part : slot.parts) FeedParts(*part);
    }

    PropagationGuard guard_;
    std::vector<Slot*>& queue_;
};

/// How many evaluations stand on the stack.
int g_chain = 0;

std::uint64_t g_revision = 0;

struct ChainGuard {
    ChainGuard() { ++g_chain; }
    ~ChainGuard() { --g_chain; }
};

MStatus EvaluateLeaf(Slot& slot) {
    if (!slot.dirty) return MS::kSuccess;
    if (slot.computing || g_chain >= kMaxChain) return MS::kFailure;
    ChainGuard chain;
    if (Slot* source = slot.Source()) {
        slot.computing = true;
        const MStatus status = Evaluate(*source);
        slot.computing = false;
        slot.dirty = !status;
        Datum value = source->value;
        if (slot.attribute->Coerce(value)) slot.value = std::move(value);
        return status;
    }
    MStatus status;
    if (NodeLogic* logic = slot.node->logic();
        logic && slot.node->type().IsComputed(*slot.attribute)) {
        slot.computing = true;
        status = logic->Compute(Plug(slot));
        slot.computing = false;
        if (status == MS::kUnknownParameter) status = MS::kSuccess;
    }
    if (status) slot.dirty = false;
    return status;
}

}  // namespace

std::uint64_t SceneRevision() {
    return g_revision;
}

void ReviseScene() {
    ++g_revision;
}

PropagationGuard::PropagationGuard() {
    ++Graves().walking;
}

PropagationGuard::~PropagationGuard() {
    Graveyard& graves = Graves();
    if (--graves.walking > 0) return;
    graves.slots.clear();
    graves.objects.clear();
}

bool PropagationGuard::active() {
    return Graves().walking > 0;
}

void PropagationGuard::Bury(std::unique_ptr<Slot> slot) {
    if (active()) Graves().slots.push_back(std::move(slot));
}

void PropagationGuard::Bury(std::shared_ptr<Object> object) {
    if (active()) Graves().objects.push_back(std::move(object));
}

MStatus Evaluate(Slot& slot) {
    if (slot.IsLeaf()) {
        if (!slot.dirty) return MS::kSuccess;
        PropagationGuard guard;
        return EvaluateLeaf(slot);
    }
    PropagationGuard guard;
    MStatus status;
    for (size_t i = 0; i < slot.parts.size(); ++i)
        if (const MStatus part = Evaluate(*slot.parts[i]); !part) status = part;
    return status;
}

const Datum& Pull(Slot& leaf) {
    Evaluate(leaf);
    return leaf.value;
}

namespace {

bool CanWrite(const Slot& leaf) {
    Slot* source = leaf.Source();
    if (!source) return true;
    const NodeLogic* feeder = source->node->logic();
    if (!feeder || !feeder->YieldsToWrites()) return false;
    Evaluate(*source);  // only what is up to date tells when it is so no longer
    return true;
}

}  // namespace

MStatus Write(Slot& leaf, Datum value) {
    if (!CanWrite(leaf)) return MS::kFailure;
    if (!leaf.IsLeaf() || !leaf.attribute->Coerce(value)) return MS::kInvalidParameter;
    leaf.value = std::move(value);
    leaf.dirty = false;
    Changed(leaf);
    return MS::kSuccess;
}

MStatus WriteNumbers(Slot& compound, const double* numbers, int count) {
    if (static_cast<int>(compound.parts.size()) != count || compound.IsArray())
        return MS::kInvalidParameter;
    for (const auto& part : compound.parts)
        if (!CanWrite(*part) || !part->attribute->IsNumber()) return MS::kFailure;
    for (int i = 0; i < count; ++i) {
        Datum value = numbers[i];
        compound.parts[static_cast<size_t>(i)]->attribute->Coerce(value);
        SetResult(*compound.parts[static_cast<size_t>(i)], std::move(value));
    }
    Changed(compound);
    return MS::kSuccess;
}

void SetResult(Slot& leaf, Datum value) {
    if (leaf.attribute->Coerce(value)) leaf.value = std::move(value);
    leaf.dirty = false;
}

void Changed(Slot& slot) {
    Spread spread;
    spread.Start(slot);
    spread.Run();
}

void MarkDirty(Slot& slot) {
    Spread spread;
    spread.Mark(slot);
    spread.Run();
}

}  // namespace minihost
