#include "minihost/graph/Modifier.h"

#include <algorithm>

#include "maya/MTransformationMatrix.h"

namespace minihost {
namespace {

/// The outermost array element on the way to a plug that is yet to be made, null for none.
Plug FirstMissing(const Plug& plug) {
    Plug missing;
    for (Plug p = plug; !p.IsNull(); p = p.Parent())
        if (p.IsElement() && !p.Find()) missing = p;
    return missing;
}

/// What the leaves of a slot hold, in order.
std::vector<Datum> LeafValues(Slot& slot) {
    std::vector<Datum> values;
    slot.ForEachLeaf([&values](const Slot& leaf) { values.push_back(leaf.value); });
    return values;
}

/// Nothing where the plug is gone, or has other leaves now.
void PutLeafValues(const Plug& plug, const std::vector<Datum>& values) {
    Slot* slot = plug.Find();
    if (!slot || LeafValues(*slot).size() != values.size()) return;
    size_t i = 0;
    slot->ForEachLeaf([&](Slot& leaf) { SetResult(leaf, values[i++]); });
    Changed(*slot);
}

void CutPlug(Scene& scene, const Plug& destination) {
    if (Slot* slot = destination.Find()) scene.Disconnect(*slot);
}

bool IsConnected(const Slot& slot) {
    return slot.source || !slot.destinations.empty() ||
           std::ranges::any_of(slot.parts, [](const auto& part) { return IsConnected(*part); });
}

}  // namespace

void Modifier::TakeBack(const Plug& made) {
    Slot* slot = made.IsNull() ? nullptr : made.Find();
    if (slot && !IsConnected(*slot)) PropagationGuard::Bury(scene_.TakeElement(*slot));
}

bool Modifier::Fail(std::string why) {
    error_ = std::move(why);
    return false;
}

void Modifier::Did(std::function<void()> undo, std::function<void()> redo) {
    steps_.push_back({std::move(undo), std::move(redo)});
}

NodePtr Modifier::Create(const std::string& typeName, const std::string& name, DagNode* parent) {
    const NodeTypePtr type = scene_.types().Find(typeName);
    if (!type || type->isAbstract) {
        Fail("there is no node type '" + typeName + "'");
        return nullptr;
    }
    return Create(type, name, parent);
}

NodePtr Modifier::Create(const std::shared_ptr<const NodeType>& type, const std::string& name,
                         DagNode* parent) {
    const NodePtr node = scene_.Make(type, name);
    const DagNodePtr above = parent ? parent->ShareDag() : nullptr;
    scene_.Add(node, above.get());
    Did([this, node] { scene_.Remove(node); },
        [this, node, above] { scene_.Add(node, above.get()); });
    return node;
}

namespace {

std::string ShapeName(const std::string& transform) {
    size_t end = transform.size();
    while (end > 0 && std::isdigit(static_cast<unsigned char>(transform[end - 1]))) --end;
    return transform.substr(0, end) + "Shape" + transform.substr(end);
}

}  // namespace

DagNodePtr Modifier::CreateShape(const std::shared_ptr<const NodeType>& type,
                                 const std::string& name, DagNode* parent) {
    if (!type || type->isAbstract || !type->IsShape()) {
        Fail("the type is no shape");
        return nullptr;
    }
    const NodePtr transform = Create("transform", name.empty() ? type->name + "1" : name, parent);
    return std::static_pointer_cast<DagNode>(
        Create(type, ShapeName(transform->name()), static_cast<DagNode*>(transform.get())));
}

void Modifier::Cut(Slot& destination) {
    const Plug from(*destination.source), to(destination);
    const auto behavior =
        to.IsElement() ? destination.attribute->disconnect : DisconnectBehavior::Nothing;
    scene_.Disconnect(destination);
    const std::vector<Datum> kept = LeafValues(destination);
    Did([this, from, to] { scene_.Connect(*from.Make(), *to.Make()); },
        [this, to, kept] {
            CutPlug(scene_, to);
            PutLeafValues(to, kept);
        });
    if (behavior == DisconnectBehavior::Delete) RemoveElement(to);
    if (behavior == DisconnectBehavior::Reset) Set(to, to.attribute->defaultValue);
}

void Modifier::CutAll(Slot& slot) {
    while (!slot.destinations.empty()) Cut(*slot.destinations.back());
    for (size_t i = slot.parts.size(); i-- > 0;) CutAll(*slot.parts[i]);
    if (slot.source) Cut(slot);  // last: the element may go with it
}

void Modifier::Delete(const NodePtr& node) {
    if (!node->isInScene()) return;
    PropagationGuard guard;
    auto* dag = dynamic_cast<DagNode*>(node.get());
    if (dag)
        while (!dag->children().empty()) Delete(dag->children().back());
    if (node->type().beforeDelete) node->type().beforeDelete(*this, *node);
    if (!node->isInScene()) return;
    for (Slot& root : node->roots()) CutAll(root);
    const std::vector<Selected> selection = scene_.selection;
    const DagNodePtr parent = dag && dag->parent() ? dag->parent()->ShareDag() : nullptr;
    const int place = dag ? scene_.PlaceOf(*dag) : -1;
    scene_.Remove(node);
    Did(
        [this, node, parent, place, selection] {
            scene_.Add(node, parent.get());
            if (parent) scene_.Reparent(static_cast<DagNode&>(*node), parent.get(), place);
            scene_.selection = selection;
        },
        [this, node] { scene_.Remove(node); });
}

bool Modifier::Connect(const Plug& source, const Plug& destination, bool force) {
    if (std::string why = scene_.WhyNot(source, destination); !why.empty())
        return Fail(std::move(why));
    Slot* to = destination.Find();
    if (to && to->source) {
        if (to->source == source.Find()) return Fail("the plugs are connected already");
        if (!force) return Fail(destination.FullName() + " is fed by another connection");
        Cut(*to);  // the element may go with its connection
    }
    const Plug madeFrom = FirstMissing(source), madeTo = FirstMissing(destination);
    Slot* from = source.Make();
    to = destination.Make();
    if (!from || !to) return Fail("an index is missing in a plug's name");
    if (to->IsFed()) {
        TakeBack(madeFrom);
        return Fail("a compound around " + destination.FullName() + " is fed by a connection");
    }
    const std::vector<Datum> before = LeafValues(*to);
    scene_.Connect(*from, *to);
    Did(
        [this, destination, before, madeFrom, madeTo] {
            CutPlug(scene_, destination);
            PutLeafValues(destination, before);
            TakeBack(madeTo);
            TakeBack(madeFrom);
        },
        [this, source, destination] { scene_.Connect(*source.Make(), *destination.Make()); });
    return true;
}

bool Modifier::Disconnect(const Plug& destination) {
    Slot* to = destination.Find();
    if (!to || !to->source) return Fail(destination.FullName() + " is not connected");
    PropagationGuard guard;
    Cut(*to);
    return true;
}

bool Modifier::Set(const Plug& leaf, Datum value) {
    const Plug made = FirstMissing(leaf);
    Slot* slot = leaf.Make();
    if (!slot) return Fail("an index is missing in a plug's name");
    Datum before = slot->value;
    const MStatus status = Write(*slot, value);
    if (status == MS::kFailure)
        return Fail(leaf.FullName() + " is fed by a connection, and cannot be set");
    if (!status) return Fail("the value is of another kind than " + leaf.FullName());
    Did(
        [this, leaf, before, made] {
            Write(*leaf.Make(), before);
            TakeBack(made);
        },
        [leaf, value] { Write(*leaf.Make(), value); });
    return true;
}

bool Modifier::SetNumbers(const Plug& compound, const std::vector<double>& numbers) {
    const Plug made = FirstMissing(compound);
    Slot* slot = compound.Make();
    if (!slot || slot->IsArray()) return Fail("an index is missing in a plug's name");
    std::vector<double> before;
    for (const auto& part : slot->parts) before.push_back(NumberOf(part->value));
    const auto write = [compound](const std::vector<double>& values) {
        return WriteNumbers(*compound.Make(), values.data(), static_cast<int>(values.size()));
    };
    const MStatus status = write(numbers);
    if (status == MS::kFailure)
        return Fail(compound.FullName() + " is fed by a connection, and cannot be set");
    if (!status)
        return Fail(compound.FullName() + " takes " + std::to_string(before.size()) + " numbers");
    Did(
        [this, write, before, made] {
            write(before);
            TakeBack(made);
        },
        [write, numbers] { write(numbers); });
    return true;
}

void Modifier::Rename(const NodePtr& node, const std::string& name) {
    const std::string before = node->name();
    const std::string after = scene_.Rename(*node, name);
    Did([this, node, before] { scene_.Rename(*node, before); },
        [this, node, after] { scene_.Rename(*node, after); });
}

bool Modifier::Reparent(const DagNodePtr& node, DagNode* parent) {
    const DagNodePtr target = parent ? parent->ShareDag() : scene_.world().ShareDag();
    if (node->IsAbove(*target)) return Fail("a node cannot be put below itself");
    if (target->IsShape()) return Fail("'" + target->name() + "' is a shape, and holds no nodes");
    if (node->parent() == target.get()) return true;
    const DagNodePtr before = node->parent()->ShareDag();
    const int place = scene_.PlaceOf(*node);
    const std::string name = node->name();
    scene_.Reparent(*node, target.get());
    const std::string after = node->name();
    Did(
        [this, node, before, place, name] {
            scene_.Reparent(*node, before.get(), place);
            if (node->name() != name) scene_.Rename(*node, name);
        },
        [this, node, target, after] {
            scene_.Reparent(*node, target.get());
            if (node->name() != after) scene_.Rename(*node, after);
        });
    return true;
}

bool Modifier::RemoveElement(const Plug& element) {
    Slot* slot = element.Find();
    if (!slot || slot->index < 0) return Fail(element.FullName() + " is no element of an array");
    PropagationGuard guard;
    for (const auto& part : slot->parts) CutAll(*part);
    while (!slot->destinations.empty()) Cut(*slot->destinations.back());
    if (slot->source) return Disconnect(element) && (!element.Find() || RemoveElement(element));
    const auto taken = std::make_shared<std::unique_ptr<Slot>>(scene_.TakeElement(*slot));
    Did(
        [this, element, taken] {
            if (*taken && !element.Find())
                scene_.PutElement(*element.Parent().Make(), std::move(*taken));
        },
        [this, element, taken] {
            Slot* slot = element.Find();
            if (slot && !IsConnected(*slot)) *taken = scene_.TakeElement(*slot);
        });
    return true;
}

void Modifier::Select(std::vector<Selected> selection) {
    if (selection == scene_.selection) return;
    const auto select = [this](std::vector<Selected> what) {
        scene_.selection = std::move(what);
        ReviseScene();
        scene_.listeners().Tell({"Event", "SelectionChanged"});
    };
    Did([select, before = scene_.selection] { select(before); },
        [select, selection] { select(selection); });
    select(std::move(selection));
}

MStatus Modifier::Undo() {
    PropagationGuard guard;
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) step->undo();
    return MS::kSuccess;
}

MStatus Modifier::Redo() {
    PropagationGuard guard;
    for (Step& step : steps_) step.redo();
    return MS::kSuccess;
}

bool SetLocalMatrix(Modifier& edits, DagNode& transform, const MMatrix& matrix) {
    const MTransformationMatrix parts(matrix);
    const auto order = static_cast<MEulerRotation::RotationOrder>(
        static_cast<int>(NumberOf(Pull(*transform.FindSlot("rotateOrder")))));
    MMatrix turn = parts.asRotateMatrix();
    if (Slot* orient = transform.FindSlot("jointOrient")) {  // it turns after the rotation
        double turns[3];
        for (size_t i = 0; i < 3; ++i) turns[i] = NumberOf(Pull(*orient->parts[i]));
        turn *= MEulerRotation(turns[0], turns[1], turns[2]).asMatrix().inverse();
    }
    const MEulerRotation rotation = MEulerRotation::decompose(turn, order);
    const MVector move = parts.getTranslation(MSpace::kTransform);
    double scale[3], shear[3];
    parts.getScale(scale, MSpace::kTransform);
    parts.getShear(shear, MSpace::kTransform);
    const auto set = [&](const char* name, double x, double y, double z) {
        return edits.SetNumbers(transform.FindPlug(name), {x, y, z});
    };
    return set("translate", move.x, move.y, move.z) &&
           set("rotate", rotation.x, rotation.y, rotation.z) &&
           set("scale", scale[0], scale[1], scale[2]) && set("shear", shear[0], shear[1], shear[2]);
}

}  // namespace minihost
