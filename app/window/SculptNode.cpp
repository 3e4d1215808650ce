#include "app/window/SculptNode.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "app/cli/ModuleHost.h"
#include "minihost/dag/DagNode.h"
#include "minihost/graph/Evaluation.h"

namespace kelmo {

namespace {

using minihost::DagNode;
using minihost::Host;
using minihost::Node;
using minihost::NodePtr;

constexpr char kType[] = "KelmoND", kOutput[] = "outputGeom";

/// The mesh that a node feeds; null for none.
DagNode* FedBy(Node& node) {
    const minihost::Slot* output = node.FindSlot(kOutput);
    if (!output) return nullptr;
    for (const minihost::Slot* target : output->destinations)
        if (auto* mesh = dynamic_cast<DagNode*>(target->node)) return mesh;
    return nullptr;
}

std::vector<NodePtr> All() {
    return Host::Get().scene.NodesOfType(kType);
}

std::string MeshOf(Node& node) {
    const DagNode* mesh = FedBy(node);
    return mesh && mesh->parent() ? mesh->parent()->UniqueName() : "";
}

/// The means of the cells of a coarser grid.
std::vector<unsigned> Swatch(const std::string& node, int pattern) {
    constexpr int kSide = 60, kCell = kSide / SculptNode::kSwatch;
    const std::vector<std::string> numbers =
        RunScript(fmt::format("KelmoPatterns -q -preview {} {}", pattern, node), false).AsStrings();
    std::vector<unsigned> swatch;
    if (numbers.size() != kSide * kSide * 3) return swatch;
    const auto mean = [&](int x, int y, int channel) {
        int sum = 0;
        for (int row = y; row < y + kCell; ++row)
            for (int column = x; column < x + kCell; ++column)
                sum += std::atoi(
                    numbers[static_cast<size_t>((row * kSide + column) * 3 + channel)].c_str());
        return static_cast<unsigned>(std::clamp(sum / (kCell * kCell), 0, 255));
    };
    for (int y = 0; y < kSide; y += kCell)
        for (int x = 0; x < kSide; x += kCell)
            swatch.push_back(0xff000000 | mean(x, y, 2) << 16 | mean(x, y, 1) << 8 | mean(x, y, 0));
    return swatch;
}
bool IsSelected(Node& node) {
    const DagNode* mesh = FedBy(node);
    return std::ranges::any_of(Host::Get().scene.selection, [&](const auto& item) {
        return item.node.get() == &node ||
               (mesh && (item.node.get() == mesh || item.node.get() == mesh->parent()));
    });
}

}  // namespace

minihost::Value RunScript(const std::string& script, bool keep, bool* good) {
    Host& host = Host::Get();
    std::optional<minihost::UndoQueue::Suspension> quiet;
    if (!keep) quiet.emplace(host.undo);
    const auto result = host.interpreter.Execute(script);
    if (result.error) host.output().Error(result.error->message);
    for (const auto& error : host.interpreter.RunDeferred()) host.output().Error(error.message);
    if (good) *good = !result.error;
    return result.value;
}

std::vector<std::string> SculptNode::Meshes() {
    std::vector<std::string> names;
    for (const NodePtr& node : Host::Get().scene.NodesOfType("mesh")) {
        auto* mesh = dynamic_cast<DagNode*>(node.get());
        const minihost::Slot* before = node->FindSlot("intermediateObject");
        if (mesh && mesh->parent() && !(before && NumberOf(before->value) != 0))
            names.push_back(mesh->parent()->UniqueName());
    }
    return names;
}

bool SculptNode::Has(const std::string& mesh) {
    return std::ranges::any_of(All(),
                               [&mesh](const NodePtr& node) { return MeshOf(*node) == mesh; });
}

void SculptNode::Find() {
    const auto nodes = All();
    const NodePtr before = node_;
    const auto selected = std::ranges::find_if(nodes, [](const auto& n) { return IsSelected(*n); });
    if (selected != nodes.end())
        node_ = *selected;
    else if (!exists())
        node_ = nodes.empty() ? nullptr : nodes.front();
    if (node_ == before) return;
    ReadLevels();
    ReadPatterns();
}

std::string SculptNode::mesh() const {
    return exists() ? MeshOf(*node_) : "";
}

minihost::Slot* SculptNode::Slot(const char* attribute, int index) const {
    minihost::Slot* slot = exists() ? node_->FindSlot(attribute) : nullptr;
    return slot && index >= 0 ? slot->FindElement(index) : slot;
}

double SculptNode::Get(const char* attribute, int index) const {
    minihost::Slot* slot = Slot(attribute, index);
    return slot && slot->IsLeaf() ? NumberOf(minihost::Pull(*slot)) : 0;
}

void SculptNode::Set(const char* attribute, double value, int index) {
    if (!exists()) return;
    const std::string element = index < 0 ? "" : fmt::format("[{}]", index);
    RunScript(fmt::format("setAttr {}.{}{} {}", name(), attribute, element, value), false);
}

void SculptNode::GetColor(float color[3]) const {
    const minihost::Slot* slot = Slot("vertexPaintColor", -1);
    for (size_t i = 0; i < 3; ++i)
        color[i] = slot && slot->parts.size() == 3
                       ? static_cast<float>(NumberOf(minihost::Pull(*slot->parts[i])))
                       : 1;
}

void SculptNode::SetColor(const float color[3]) {
    if (exists())
        RunScript(fmt::format("setAttr {}.vertexPaintColor {} {} {}", name(), color[0], color[1],
                              color[2]),
                  false);
}

int SculptNode::Run(int command, int parameter) {
    if (!exists()) return 0;
    RunScript(fmt::format("setAttr {0}.param0 {1}; setAttr {0}.commnad {2}; setAttr {0}.execute 1",
                          name(), parameter, command),
              false);
    return Int("param0");
}

bool SculptNode::isSculpting() const {
    return exists() && !Host::Get().scene.NodesOfType("KelmoSurface").empty();
}

int SculptNode::affects() const {
    return Is("affectVertColor") ? 1 : Is("affectStencil") ? 2 : 0;
}

void SculptNode::ReadLevels() {
    levels_.clear();
    active_ = 0;
    if (!exists()) return;
    const int count = Run(90);
    active_ = Run(91);
    for (int level = 0; level < count; ++level)
        levels_.push_back({Run(94, level), Run(95, level), Run(93, level) == 1});
}

void SculptNode::ReadPatterns() {
    patterns_.clear();
    activePattern_ = -1;
    if (!exists()) return;
    for (const std::string& called :
         RunScript("KelmoPatterns -q -names " + name(), false).AsStrings())
        patterns_.push_back({called, Swatch(name(), static_cast<int>(patterns_.size()))});
    activePattern_ = Run(83);
}

void SculptNode::HitPattern(int index) {
    Run(82, index);
    activePattern_ = Run(83);
}

void SculptNode::AddPattern(const std::string& file) {
    bool good = false;
    const minihost::Value added =
        RunScript("KelmoPatterns -add " + ScriptText(file) + " " + name(), false, &good);
    if (!good) return;
    Run(81, added.AsInt());
    ReadPatterns();
}

}  // namespace kelmo
