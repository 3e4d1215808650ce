#include "minihost/graph/Names.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace minihost {
namespace {

/// The part of a path between two dots, with its index.
struct Step {
    std::string name, index;
    bool hasIndex = false;
};

std::optional<Step> ParseStep(const std::string& text) {
    const size_t open = text.find('[');
    if (open == text.npos) return Step{text, "", false};
    if (text.back() != ']') return std::nullopt;
    return Step{text.substr(0, open), text.substr(open + 1, text.size() - open - 2), true};
}

std::optional<int> ParseIndex(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
    return value;
}

MFn::Type ComponentKind(const std::string& name) {
    if (name == "f") return MFn::kMeshPolygonComponent;
    if (name == "vtx") return MFn::kMeshVertComponent;
    return name == "e" ? MFn::kMeshEdgeComponent : MFn::kInvalid;
}

/// "3", "2:7" or "*"; ranges of more than kMostElements are none.
bool ParseElements(const std::string& text, Component& component) {
    constexpr int kMostElements = 1 << 28;
    if (text == "*") {
        component.complete = true;
        return true;
    }
    const size_t colon = text.find(':');
    const auto first = ParseIndex(std::string_view(text).substr(0, colon));
    const auto last =
        colon == text.npos ? first : ParseIndex(std::string_view(text).substr(colon + 1));
    if (!first || !last || *last < *first || *last - *first >= kMostElements) return false;
    for (int i = *first; i <= *last; ++i) component.elements.push_back(i);
    return true;
}

}  // namespace

Plug PlugOfNode(const NodePtr& node, const std::string& attribute) {
    Plug plug;
    const Attribute* expected = nullptr;  // the compound that the last step named
    for (size_t at = 0; at <= attribute.size();) {
        const size_t dot = std::min(attribute.find('.', at), attribute.size());
        const auto step = ParseStep(attribute.substr(at, dot - at));
        at = dot + 1;
        if (!step) return {};
        const Plug next = node->FindPlug(step->name);
        if (next.IsNull() || (expected && next.attribute->parent != expected)) return {};
        plug.node = node;
        plug.attribute = expected = next.attribute;
        if (!step->hasIndex || step->index.empty()) continue;
        const auto index = ParseIndex(step->index);
        if (!index || !plug.attribute->isArray) return {};
        plug.depth = plug.attribute->ArrayDepth() - 1;
        if (plug.depth >= Plug::kMaxDepth) return {};
        plug = plug.Element(*index);
    }
    return plug;
}

std::vector<Named> FindNamed(Scene& scene, const std::string& name) {
    const size_t dot = name.find('.');
    std::vector<Named> found;
    const auto nodes = scene.FindAll(name.substr(0, dot));
    for (const NodePtr& node : nodes) {
        Named named{node, {}, {MFn::kInvalid, false, {}}};
        if (dot != name.npos) {
            const auto step = ParseStep(name.substr(dot + 1));
            const MFn::Type kind =
                step && step->hasIndex ? ComponentKind(step->name) : MFn::kInvalid;
            if (kind != MFn::kInvalid && node->Is(MFn::kDagNode)) {
                named.component.kind = kind;
                if (!ParseElements(step->index, named.component)) continue;
            } else if ((named.plug = PlugOfNode(node, name.substr(dot + 1))).IsNull()) {
                continue;
            }
        }
        found.push_back(std::move(named));
    }
    return found;
}

Plug FindPlugNamed(Scene& scene, const std::string& name, std::string* error) {
    std::string ignored;
    std::string& why = error ? *error : ignored;
    const size_t dot = name.find('.');
    if (dot == name.npos) {
        why = "'" + name + "' names no attribute: write NODE.ATTRIBUTE";
        return {};
    }
    const std::string nodeName = name.substr(0, dot);
    const auto nodes = scene.FindAll(nodeName);
    if (nodes.size() != 1) {
        why = (nodes.empty() ? "there is no node '" : "more than one node is called '") + nodeName +
              "'";
        return {};
    }
    const Plug plug = PlugOfNode(nodes[0], name.substr(dot + 1));
    if (plug.IsNull())
        why = "'" + nodeName + "' (" + nodes[0]->type().name + ") has no attribute '" +
              name.substr(dot + 1) + "'";
    return plug;
}

std::vector<std::string> ComponentNames(const Node& node, const Component& component) {
    const std::string front =
        node.UniqueName() + (component.kind == MFn::kMeshVertComponent   ? ".vtx["
                             : component.kind == MFn::kMeshEdgeComponent ? ".e["
                                                                         : ".f[");
    if (component.complete) return {front + "*]"};
    std::vector<std::string> names;
    for (size_t i = 0; i < component.elements.size();) {
        size_t end = i + 1;
        while (end < component.elements.size() &&
               component.elements[end] == component.elements[end - 1] + 1)
            ++end;
        names.push_back(front + std::to_string(component.elements[i]));
        if (end > i + 1) names.back() += ":" + std::to_string(component.elements[end - 1]);
        names.back() += "]";
        i = end;
    }
    return names;
}

}  // namespace minihost
