#include <algorithm>

#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

Value NamesOf(const std::vector<NodePtr>& nodes, bool full = false) {
    std::vector<std::string> names;
    for (const NodePtr& node : nodes) {
        const auto* dag = dynamic_cast<DagNode*>(node.get());
        names.push_back(full && dag ? dag->Path() : node->UniqueName());
    }
    return Value(std::move(names));
}

void AddCreateNode(Host& host) {
    Syntax syntax;
    syntax.AddFlag("n", "name", {Argument::String});
    syntax.AddFlag("p", "parent", {Argument::String});
    syntax.AddFlag("ss", "skipSelect");
    syntax.SetObjects(1, 1);
    AddEdit(host, "createNode", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                const std::string name = flags.Get("name").AsString();
                const auto type = host.types.Find(flags.Objects()[0].AsString());
                if (!type || type->isAbstract)
                    return CommandError{"there is no node type '" + flags.Objects()[0].AsString() +
                                        "'"};
                DagNode* parent = nullptr;
                CommandError error;
                if (flags.IsSet("parent")) {
                    const NodePtr above = FindNode(host, flags.Get("parent").AsString(), error);
                    if (!above) return error;
                    parent = dynamic_cast<DagNode*>(above.get());
                    if (!parent || parent->IsShape() || !type->IsDag())
                        return CommandError{"'" + above->name() + "' cannot be the parent of a " +
                                            type->name};
                }
                const NodePtr node = type->IsShape() && !parent
                                         ? NodePtr(edits.CreateShape(type, name))
                                         : edits.Create(type, name, parent);
                if (!flags.IsSet("skipSelect")) edits.Select({{node}});
                return Value(node->UniqueName());
            });
}

void AddDelete(Host& host) {
    Syntax syntax;
    syntax.SetObjects(0, -1);
    AddEdit(host, "delete", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<NodePtr> nodes;
                CommandError error;
                if (!FindNodes(host, flags, nodes, error)) return error;
                for (const NodePtr& node : nodes) {
                    if (host.IsDefault(*node))
                        return CommandError{"'" + node->name() +
                                            "' belongs to every scene and cannot be deleted"};
                    edits.Delete(node);
                }
                return {};
            });
}

void AddRename(Host& host) {
    Syntax syntax;
    syntax.SetObjects(1, 2);
    AddEdit(host, "rename", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                const auto& words = flags.Objects();
                CommandError error;
                NodePtr node;
                if (words.size() == 2)
                    node = FindNode(host, words[0].AsString(), error);
                else if (!host.scene.selection.empty())
                    node = host.scene.selection[0].node;
                else
                    error.message = "nothing is selected: say which node to rename";
                if (!node) return error;
                edits.Rename(node, words.back().AsString());
                return Value(node->UniqueName());
            });
}

/// Sets a transform so that it stands in the world as `world` says.
void Place(Modifier& edits, DagNode& node, const MMatrix& world) {
    DagNode* parent = node.parent();
    const MMatrix above = parent && parent->parent() ? parent->WorldMatrix() : MMatrix();
    SetLocalMatrix(edits, node, world * above.inverse());
}

void AddParent(Host& host) {
    Syntax syntax;
    syntax.AddFlag("w", "world");
    syntax.AddFlag("r", "relative");
    syntax.AddFlag("s", "shape");
    syntax.SetObjects(0, -1);
    AddEdit(host, "parent", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<NodePtr> nodes;
                CommandError error;
                if (!FindNodes(host, flags, nodes, error)) return error;
                DagNode* parent = nullptr;
                if (!flags.IsSet("world")) {
                    if (nodes.size() < 2)
                        return CommandError{"say what to put below what: parent CHILD... PARENT"};
                    parent = dynamic_cast<DagNode*>(nodes.back().get());
                    if (!parent)
                        return CommandError{"'" + nodes.back()->name() +
                                            "' has no place in the "
                                            "hierarchy"};
                    nodes.pop_back();
                }
                for (const NodePtr& node : nodes) {
                    const auto dag = std::dynamic_pointer_cast<DagNode>(node);
                    if (!dag)
                        return CommandError{"'" + node->name() + "' has no place in the hierarchy"};
                    const MMatrix world = dag->WorldMatrix();
                    if (!edits.Reparent(dag, parent)) return CommandError{edits.error()};
                    if (!flags.IsSet("relative") && !dag->IsShape()) Place(edits, *dag, world);
                }
                return NamesOf(nodes);
            });
}

void AddLs(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"sl", "selection"},
                                      {"l", "long"},
                                      {"dag", "dag"},
                                      {"s", "shapes"},
                                      {"tr", "transforms"}})
        syntax.AddFlag(brief, name);
    syntax.AddFlag("typ", "type", {Argument::String});
    syntax.AddFlag("et", "exactType", {Argument::String});
    syntax.Find("type")->multiUse = syntax.Find("exactType")->multiUse = true;
    syntax.SetObjects(0, -1);
    AddQuestion(host, "ls", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
        std::vector<Named> items;
        if (flags.IsSet("selection") || flags.Objects().empty()) {
            if (flags.IsSet("selection"))
                for (const Selected& item : host.scene.selection)
                    items.push_back({item.node, {}, item.component});
            else
                for (const NodePtr& node : host.scene.Nodes())
                    items.push_back({node, {}, {MFn::kInvalid, false, {}}});
        }
        for (const Value& pattern : flags.Objects())
            for (const Named& named : FindNamed(host.scene, pattern.AsString()))
                items.push_back(named);
        const auto fits = [&flags](const Node& node) {
            bool any = !flags.IsSet("type") && !flags.IsSet("exactType");
            for (size_t i = 0; i < flags.Uses("type"); ++i)
                any |= IsOfType(node, flags.Get("type", 0, i).AsString());
            for (size_t i = 0; i < flags.Uses("exactType"); ++i)
                any |= node.type().name == flags.Get("exactType", 0, i).AsString();
            return any && (!flags.IsSet("dag") || node.type().IsDag()) &&
                   (!flags.IsSet("shapes") || node.type().IsShape()) &&
                   (!flags.IsSet("transforms") || node.Is(MFn::kTransform));
        };
        std::vector<std::string> names;
        for (const Named& item : items) {
            if (!fits(*item.node)) continue;
            const auto* dag = dynamic_cast<DagNode*>(item.node.get());
            if (item.HasComponent())
                std::ranges::copy(ComponentNames(*item.node, item.component),
                                  std::back_inserter(names));
            else if (!item.plug.IsNull())
                names.push_back(item.plug.FullName());
            else
                names.push_back(flags.IsSet("long") && dag ? dag->Path() : item.node->UniqueName());
        }
        return Value(std::move(names));
    });
}

void AddListRelatives(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"c", "children"},
                                      {"p", "parent"},
                                      {"s", "shapes"},
                                      {"f", "fullPath"},
                                      {"ad", "allDescendents"},
                                      {"ap", "allParents"}})
        syntax.AddFlag(brief, name);
    syntax.AddFlag("typ", "type", {Argument::String});
    syntax.SetObjects(0, -1);
    AddQuestion(host, "listRelatives", std::move(syntax),
                [&host](const ParsedFlags& flags) -> Answer {
                    std::vector<NodePtr> nodes, found;
                    CommandError error;
                    if (!FindNodes(host, flags, nodes, error)) return error;
                    const auto walk = [&](auto&& self, DagNode& dag) -> void {
                        for (const DagNodePtr& child : dag.children()) {
                            if (flags.IsSet("allDescendents")) self(self, *child);
                            if (!flags.IsSet("shapes") || child->IsShape()) found.push_back(child);
                        }
                    };
                    for (const NodePtr& node : nodes) {
                        auto* dag = dynamic_cast<DagNode*>(node.get());
                        if (!dag) continue;
                        if (!flags.IsSet("parent") && !flags.IsSet("allParents"))
                            walk(walk, *dag);
                        else if (dag->parent() && dag->parent()->parent())
                            found.push_back(dag->parent()->ShareDag());
                    }
                    if (flags.IsSet("type"))
                        std::erase_if(found, [&](const NodePtr& node) {
                            return !IsOfType(*node, flags.Get("type").AsString());
                        });
                    return NamesOf(found, flags.IsSet("fullPath"));
                });
}

void AddQuestionsOfNodes(Host& host) {
    Syntax exists;
    exists.SetObjects(1, 1);
    AddQuestion(host, "objExists", std::move(exists), [&host](const ParsedFlags& flags) -> Answer {
        return Value(!FindNamed(host.scene, flags.Objects()[0].AsString()).empty());
    });
    Syntax type;
    type.SetObjects(1, 1);
    for (const char* name : {"nodeType", "objectType"})
        AddQuestion(host, name, type, [&host](const ParsedFlags& flags) -> Answer {
            CommandError error;
            const NodePtr node = FindNode(host, flags.Objects()[0].AsString(), error);
            return node ? Answer(Value(node->type().name)) : Answer(error);
        });
    AddQuestion(host, "allNodeTypes", Syntax(),
                [&host](const ParsedFlags&) -> Answer { return Value(host.types.Names()); });
}

}  // namespace

void AddNodeCommands(Host& host) {
    AddCreateNode(host);
    AddDelete(host);
    AddRename(host);
    AddParent(host);
    AddLs(host);
    AddListRelatives(host);
    AddQuestionsOfNodes(host);
}

}  // namespace minihost
