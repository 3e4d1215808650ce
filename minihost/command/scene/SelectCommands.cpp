#include <algorithm>

#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

std::vector<Selected> Merge(std::vector<Selected> selection, const std::vector<Selected>& items,
                            const ParsedFlags& flags) {
    const bool add = flags.IsSet("add"), first = flags.IsSet("addFirst");
    const bool toggle = flags.IsSet("toggle"), deselect = flags.IsSet("deselect");
    if (!add && !first && !toggle && !deselect) selection.clear();
    std::vector<Selected> front;
    for (const Selected& item : items) {
        const bool was = std::erase(selection, item) > 0;
        if (deselect || (toggle && was)) continue;
        (first ? front : selection).push_back(item);
    }
    selection.insert(selection.begin(), front.begin(), front.end());
    return selection;
}

void AddSelect(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"r", "replace"},
                                      {"add", "add"},
                                      {"af", "addFirst"},
                                      {"tgl", "toggle"},
                                      {"d", "deselect"},
                                      {"cl", "clear"},
                                      {"all", "all"},
                                      {"hi", "hierarchy"},
                                      {"ne", "noExpand"}})
        syntax.AddFlag(brief, name);
    syntax.SetObjects(0, -1);
    AddEdit(host, "select", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                if (flags.IsSet("clear")) {
                    edits.Select({});
                    return {};
                }
                std::vector<Named> objects;
                CommandError error;
                if (flags.IsSet("all"))
                    for (const DagNodePtr& top : host.scene.world().children())
                        objects.push_back({top, {}, {MFn::kInvalid, false, {}}});
                else if (!FindObjects(host, flags, objects, error))
                    return error;
                std::vector<Selected> items;
                for (const Named& object : objects)
                    items.push_back({object.node, object.component});
                edits.Select(Merge(host.scene.selection, items, flags));
                return {};
            });
}

/// What kinds of things a click would select, kept for scripts that set it and ask.
struct SelectKinds {
    bool component = false, facet = false, vertex = false;
};

void AddModes(Host& host) {
    const auto kinds = std::make_shared<SelectKinds>();
    Syntax mode;
    for (const auto& [brief, name] : {std::pair{"o", "object"}, {"co", "component"}})
        mode.AddFlag(brief, name);
    mode.EnableQuery(true);
    AddQuestion(host, "selectMode", std::move(mode), [kinds](const ParsedFlags& flags) -> Answer {
        if (flags.IsQuery()) return Value(kinds->component == flags.IsSet("component"));
        kinds->component = flags.IsSet("component");
        return {};
    });
    Syntax type;
    type.AddFlag("fc", "facet", {Syntax::Argument::Boolean});
    type.AddFlag("v", "vertex", {Syntax::Argument::Boolean});
    type.EnableQuery(true);
    AddQuestion(host, "selectType", std::move(type), [kinds](const ParsedFlags& flags) -> Answer {
        if (flags.IsQuery()) return Value(flags.IsSet("facet") ? kinds->facet : kinds->vertex);
        if (flags.IsSet("facet")) kinds->facet = flags.Get("facet").AsBool();
        if (flags.IsSet("vertex")) kinds->vertex = flags.Get("vertex").AsBool();
        return {};
    });
}

}  // namespace

void AddSelectCommands(Host& host) {
    AddSelect(host);
    AddModes(host);
}

}  // namespace minihost
