#include "minihost/scene/SceneReader.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>

#include "minihost/graph/Evaluation.h"
#include "minihost/scene/DataForms.h"
#include "minihost/scene/PlugPath.h"
#include "minihost/scene/SceneWriter.h"
#include "minihost/scene/UnknownNode.h"

namespace minihost {
namespace {

/// How many of a kind of complaint are told one by one.
constexpr size_t kMaxWarnings = 20;

std::string LastName(const std::string& path) {
    return path.substr(path.rfind('|') + 1);
}

/// Takes away the connections into a node that has some since it was made, or since every scene
/// has them.
void CutSources(Scene& scene, Slot& slot) {
    if (slot.source) scene.Disconnect(slot);
    for (const auto& part : slot.parts) CutSources(scene, *part);
}

}  // namespace

ScenePlan::ScenePlan(Host& host, std::string_view content) : host_(host), content_(content) {
    ReadStatements(content, [this](SceneStatement& statement) { Read(statement); });
}

void ScenePlan::Read(SceneStatement& statement) {
    const bool isOfNode = [&statement] {
        const auto* text = std::get_if<std::string>(&statement.tokens[0].what);
        return text && (*text == "set" || *text == "elements");
    }();
    if (isOfNode && nodes_.empty())
        throw DocumentError{"expected 'node' before the first value", statement.at};
    if (isOfNode && !nodes_.back().type) {
        nodes_.back().unknown.push_back(std::move(statement));
        return;
    }
    StatementReader words(statement);
    const std::string keyword = words.TakeText("a keyword");
    if (isOfNode) {
        Value& value = nodes_.back().values.emplace_back();
        value.at = statement.at;
        value.plug = words.TakeText("the name of a plug");
        keyword == "set" ? ReadSet(words, value) : ReadElements(words, value);
    } else if (keyword == "node" || keyword == "default") {
        ReadNode(words, keyword == "default");
    } else if (keyword == "connect") {
        ReadConnection(words, statement.at);
    } else if (keyword == "playback") {
        ReadPlayback(words);
    } else {
        throw DocumentError{"there is no statement '" + keyword + "'", statement.at};
    }
    words.End();
}

void ScenePlan::ReadPlayback(StatementReader& words) {
    const std::string unit = words.TakeText("a unit of time");
    const auto* found = std::ranges::find(kUnitNames, unit);
    if (found == std::end(kUnitNames) || unit.empty())
        words.Fail("there is no unit of time '" + unit + "'");
    unit_ = static_cast<MTime::Unit>(found - kUnitNames);
    minTime_ = words.Take<double>("a time");
    maxTime_ = words.Take<double>("a time");
    if (!std::isfinite(minTime_) || !(minTime_ <= maxTime_) || !std::isfinite(maxTime_))
        words.Fail("expected a time before another");
    hasPlayback_ = true;
}

void ScenePlan::ReadNode(StatementReader& words, bool isDefault) {
    PlannedNode node;
    node.isDefault = isDefault;
    node.typeName = words.TakeText("the name of a node type");
    node.typeId = MTypeId(words.TakeId());
    node.type = node.typeId ? host_.types.Find(node.typeId) : host_.types.Find(node.typeName);
    if (node.type && (node.type->isAbstract || IsUnknownType(*node.type))) node.type = nullptr;
    node.path = words.TakeText("the name of a node");
    node.isDag = node.path.starts_with('|');
    if (node.type && node.type->IsDag() != node.isDag)
        words.Fail(node.isDag ? "a node of type '" + node.typeName + "' has no place in a hierarchy"
                              : "the path of '" + node.path + "' does not begin with '|'");
    const std::string name = LastName(node.path);
    if (name != Scene::Fitting(name) || (!node.isDag && name != node.path))
        words.Fail("'" + node.path + "' is no name for a node");
    PlaceInHierarchy(words, node);
    if (!byPath_.try_emplace(node.path, static_cast<int>(nodes_.size())).second)
        words.Fail("there is a node '" + node.path + "' already");
    nodes_.push_back(std::move(node));
}

void ScenePlan::PlaceInHierarchy(StatementReader& words, PlannedNode& node) {
    const size_t bar = node.path.rfind('|');
    if (!node.isDag || bar == 0) return;
    const auto parent = byPath_.find(node.path.substr(0, bar));
    if (parent == byPath_.end()) words.Fail("there is no node above '" + node.path + "'");
    const PlannedNode& above = nodes_[static_cast<size_t>(parent->second)];
    if (above.type && above.type->IsShape())
        words.Fail("'" + above.path + "' is a shape, and holds no nodes");
    node.parent = parent->second;
    node.depth = above.depth + 1;
    if (node.depth >= kMaxDepth) words.Fail("nodes are nested too deep");
}

void ScenePlan::ReadSet(StatementReader& words, Value& value) {
    if (words.NextIsNumber()) {
        std::vector<double> numbers;
        while (!words.AtEnd()) numbers.push_back(words.Take<double>("a number"));
        value.what = std::move(numbers);
        return;
    }
    const std::string kind = words.TakeText("a number or a kind of data");
    std::shared_ptr<Data> data;
    if (kind != "none") {
        const DataForm* form = DataFormNamed(kind);
        if (!form) words.Fail("there is no kind of data '" + kind + "'");
        data = form->read(words);
    }
    value.what = std::move(data);
}

void ScenePlan::ReadElements(StatementReader& words, Value& value) {
    value.isElements = true;
    value.indices = words.Take<std::vector<int>>("i(...)");
    if (value.indices.empty() || value.indices[0] < 0 ||
        std::ranges::adjacent_find(value.indices, std::greater_equal()) != value.indices.end())
        words.Fail("expected indices that rise");
    if (words.AtEnd()) return;
    auto numbers = words.Take<std::vector<double>>("d(...)");
    if (numbers.size() != value.indices.size())
        words.Fail("there are not as many numbers as indices");
    value.what = std::move(numbers);
}

int ScenePlan::TakeNode(StatementReader& words) {
    const std::string path = words.TakeText("the name of a node");
    const auto found = byPath_.find(path);
    if (found == byPath_.end()) words.Fail("there is no node '" + path + "' above");
    return found->second;
}

void ScenePlan::ReadConnection(StatementReader& words, size_t at) {
    PlannedConnection connection{};
    connection.at = at;
    connection.source = TakeNode(words);
    connection.sourcePlug = words.TakeText("the name of a plug");
    connection.destination = TakeNode(words);
    connection.destinationPlug = words.TakeText("the name of a plug");
    connections_.push_back(std::move(connection));
}

void ScenePlan::Warn(size_t at, const std::string& what) {
    warnings_.push_back(warnings_.size() < kMaxWarnings ? PlaceIn(content_, at) + ": " + what : "");
}

std::vector<std::string> ScenePlan::Apply(bool asImport, const std::string& prefix) {
    if (hasPlayback_ && !asImport) {
        MTime::setUIUnit(unit_);
        host_.playback.SetMaxTime(maxTime_);
        host_.playback.SetMinTime(minTime_);
    }
    for (PlannedNode& node : nodes_) Make(node, asImport, prefix);
    for (PlannedNode& node : nodes_) {
        if (asImport && host_.IsDefault(*node.made)) continue;
        for (Slot& root : node.made->roots()) CutSources(host_.scene, root);
        for (const Value& value : node.values) Set(node, value);
        // What a node computed of itself when it was made is not what the file says.
        for (Slot& root : node.made->roots())
            root.ForEachLeaf([](Slot& leaf) {
                if (leaf.node->type().IsComputed(*leaf.attribute)) leaf.dirty = true;
            });
    }
    for (const PlannedConnection& connection : connections_) Connect(connection, asImport);
    if (warnings_.size() > kMaxWarnings) {
        const size_t more = warnings_.size() - kMaxWarnings;
        warnings_.resize(kMaxWarnings);
        warnings_.push_back(std::to_string(more) + " more of the kind");
    }
    WarnOfUnknownTypes();
    return std::move(warnings_);
}

void ScenePlan::Make(PlannedNode& node, bool asImport, const std::string& prefix) {
    const std::string name = LastName(node.path);
    if (node.isDefault && node.type) {
        const NodePtr there = host_.scene.Find(name);
        if (there && host_.IsDefault(*there) && &there->type() == node.type.get()) {
            node.made = there;
            return;
        }
    }
    const NodeTypePtr type =
        node.type ? node.type : host_.types.Find(node.isDag ? "unknownDag" : "unknown");
    node.made = host_.scene.Make(type, asImport ? prefix + name : name);
    if (auto* unknown = node.made->LogicAs<UnknownLogic>()) {
        unknown->typeName = node.typeName;
        unknown->typeId = node.typeId;
        unknown->values = std::move(node.unknown);
    }
    Node* parent = node.parent < 0 ? nullptr : nodes_[static_cast<size_t>(node.parent)].made.get();
    host_.scene.Add(node.made, static_cast<DagNode*>(parent));
}

void ScenePlan::Set(PlannedNode& node, const Value& value) {
    std::string why;
    Slot* slot = MakeSlot(*node.made, value.plug, why);
    if (!slot) return Warn(value.at, why);
    if (value.isElements != slot->IsArray())
        return Warn(value.at,
                    "'" + value.plug + "' is " + (slot->IsArray() ? "an" : "no") + " array");
    const auto put = [&](Slot& leaf, Datum datum) {
        if (leaf.IsFed() || !leaf.IsLeaf() || !leaf.attribute->Coerce(datum))
            return Warn(value.at, "'" + value.plug + "' does not take the value");
        SetResult(leaf, std::move(datum));
    };
    if (const auto* data = std::get_if<std::shared_ptr<Data>>(&value.what))
        return put(*slot, *data);
    const auto& numbers = std::get<std::vector<double>>(value.what);
    for (size_t i = 0; i < value.indices.size(); ++i) {
        Slot* element = MakeElement(*slot, value.indices[i], why);
        if (!element) return Warn(value.at, why);
        if (!numbers.empty()) put(*element, numbers[i]);
    }
    if (value.isElements) return;
    std::vector<Slot*> leaves;
    slot->ForEachLeaf([&leaves](Slot& leaf) { leaves.push_back(&leaf); });
    if (leaves.size() != numbers.size())
        return Warn(value.at, "'" + value.plug + "' takes another number of values");
    for (size_t i = 0; i < numbers.size(); ++i) put(*leaves[i], numbers[i]);
}

void ScenePlan::Connect(const PlannedConnection& c, bool asImport) {
    const NodePtr &from = nodes_[static_cast<size_t>(c.source)].made,
                  &to = nodes_[static_cast<size_t>(c.destination)].made;
    if (auto* unknown = from->LogicAs<UnknownLogic>()) {
        unknown->connections.push_back({true, c.sourcePlug, to, c.destinationPlug});
        return;
    }
    if (auto* unknown = to->LogicAs<UnknownLogic>()) {
        unknown->connections.push_back({false, c.destinationPlug, from, c.sourcePlug});
        return;
    }
    std::string why;
    Slot* source = MakeSlot(*from, c.sourcePlug, why);
    Slot* destination = source ? MakeSlot(*to, c.destinationPlug, why) : nullptr;
    if (!destination) return Warn(c.at, why);
    if (destination->source == source) return;
    // What is imported joins the lists of nodes that every scene has at their ends.
    if (asImport && destination->IsFed() && destination->index >= 0 && host_.IsDefault(*to)) {
        Slot& array = *destination->parent;
        if (array.parts.back()->index < INT_MAX)
            destination = array.Element(array.parts.back()->index + 1);
    }
    if (destination->IsFed()) return Warn(c.at, Plug(*destination).FullName() + " is taken");
    why = host_.scene.WhyNot(Plug(*source), Plug(*destination));
    if (!why.empty()) return Warn(c.at, why);
    host_.scene.Connect(*source, *destination);
}

void ScenePlan::WarnOfUnknownTypes() {
    std::map<std::pair<std::string, unsigned>, int> counts;
    for (const PlannedNode& node : nodes_)
        if (!node.type) ++counts[{node.typeName, node.typeId.id()}];
    for (const auto& [type, count] : counts)
        warnings_.push_back("the node type '" + type.first + "' (" + std::to_string(type.second) +
                            ") is not known: load the module that has it, and open the scene "
                            "again; " +
                            std::to_string(count) + " nodes are kept as they are");
}

}  // namespace minihost
