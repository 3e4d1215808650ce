#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

Syntax WithObjects(int least, int most) {
    Syntax syntax;
    syntax.SetObjects(least, most);
    return syntax;
}

void AddUndo(Host& host) {
    AddQuestion(host, "undo", Syntax(), [&host](const ParsedFlags&) -> Answer {
        if (!host.undo.Undo()) return CommandError{"there are no more commands to undo"};
        host.listeners.Tell({"Event", "Undo"});
        return {};
    });
    AddQuestion(host, "redo", Syntax(), [&host](const ParsedFlags&) -> Answer {
        if (!host.undo.Redo()) return CommandError{"there are no more commands to redo"};
        host.listeners.Tell({"Event", "Redo"});
        return {};
    });
    Syntax info;
    info.AddFlag("st", "state", {Argument::Boolean});
    info.AddFlag("un", "undoName");
    info.AddFlag("swf", "stateWithoutFlush", {Argument::Boolean});
    info.AddFlag("rn", "redoName");
    info.AddFlag("l", "length");
    info.EnableQuery(true);
    AddQuestion(host, "undoInfo", std::move(info), [&host](const ParsedFlags& flags) -> Answer {
        if (!flags.IsQuery()) {
            for (const char* flag : {"state", "stateWithoutFlush"})
                if (flags.IsSet(flag)) host.undo.enabled = flags.Get(flag).AsBool();
            return {};
        }
        if (flags.IsSet("undoName")) return Value(host.undo.UndoName());
        if (flags.IsSet("redoName")) return Value(host.undo.RedoName());
        if (flags.IsSet("length")) return Value(static_cast<int>(host.undo.size()));
        return Value(host.undo.enabled);
    });
    AddQuestion(host, "flushUndo", Syntax(), [&host](const ParsedFlags&) -> Answer {
        host.undo.Clear();
        return {};
    });
}

void AddModules(Host& host) {
    AddQuestion(
        host, "loadPlugin", WithObjects(1, -1), [&host](const ParsedFlags& flags) -> Answer {
            for (const Value& path : flags.Objects())
                if (const std::string why = host.modules.Load(path.AsString()); !why.empty())
                    return CommandError{why};
            return Value(host.modules.Names());
        });
    AddQuestion(
        host, "unloadPlugin", WithObjects(1, -1), [&host](const ParsedFlags& flags) -> Answer {
            for (const Value& name : flags.Objects())
                if (const std::string why = host.modules.Unload(name.AsString()); !why.empty())
                    return CommandError{why};
            return {};
        });
    Syntax info = WithObjects(0, 1);
    for (const auto& [brief, name] : {std::pair{"ls", "listPlugins"},
                                      {"l", "loaded"},
                                      {"v", "version"},
                                      {"vd", "vendor"},
                                      {"p", "path"},
                                      {"c", "command"}})
        info.AddFlag(brief, name);
    info.EnableQuery(true);
    AddQuestion(host, "pluginInfo", std::move(info), [&host](const ParsedFlags& flags) -> Answer {
        if (flags.IsSet("listPlugins")) return Value(host.modules.Names());
        const std::string name = flags.Objects().empty() ? "" : flags.Objects()[0].AsString();
        const auto module = host.modules.Find(name);
        if (flags.IsSet("loaded")) return Value(module != nullptr);
        if (!module) return CommandError{"no module '" + name + "' is loaded"};
        if (flags.IsSet("version")) return Value(module->version);
        if (flags.IsSet("vendor")) return Value(module->vendor);
        if (flags.IsSet("command")) return Value(module->commands);
        return Value(module->path);
    });
}

void AddTools(Host& host) {
    AddQuestion(host, "setToolTo", WithObjects(1, 1), [&host](const ParsedFlags& flags) -> Answer {
        const std::string name = flags.Objects()[0].AsString();
        if (!host.tools.SetTo(name)) return CommandError{"there is no tool '" + name + "'"};
        return {};
    });
    AddQuestion(host, "currentCtx", Syntax(),
                [&host](const ParsedFlags&) -> Answer { return Value(host.tools.current()); });
    Syntax info = WithObjects(1, 1);
    for (const auto& [brief, name] : {std::pair{"c", "class"}, {"ex", "exists"}, {"t", "title"}})
        info.AddFlag(brief, name);
    info.EnableQuery(true);
    AddQuestion(host, "contextInfo", std::move(info), [&host](const ParsedFlags& flags) -> Answer {
        const std::string name = flags.Objects()[0].AsString();
        if (flags.IsSet("exists")) return Value(host.tools.Exists(name));
        if (!host.tools.Exists(name)) return CommandError{"there is no tool '" + name + "'"};
        if (flags.IsSet("title")) {
            const MPxContext* tool = host.tools.Find(name);
            return Value(tool ? tool->titleString().str() : name);
        }
        return Value(host.tools.ClassOf(name));
    });
}

/// There is no window to ask in: the message is told, and the default button is taken for pressed.
void AddDialogs(Host& host) {
    Syntax syntax;
    syntax.AddFlag("t", "title", {Argument::String});
    syntax.AddFlag("m", "message", {Argument::String});
    syntax.AddFlag("b", "button", {Argument::String});
    syntax.AddFlag("db", "defaultButton", {Argument::String});
    syntax.AddFlag("cb", "cancelButton", {Argument::String});
    syntax.AddFlag("ds", "dismissString", {Argument::String});
    syntax.AddFlag("icn", "icon", {Argument::String});
    syntax.Find("button")->multiUse = true;
    AddQuestion(host, "confirmDialog", std::move(syntax), [&host](const ParsedFlags& flags) {
        const std::string title = flags.Get("title").AsString();
        host.output().Warning((title.empty() ? "" : title + ": ") +
                              flags.Get("message").AsString());
        const std::string pressed = flags.Get("defaultButton").AsString();
        if (!pressed.empty()) return Answer(pressed);
        return flags.IsSet("button") ? Answer(flags.Get("button")) : Answer("Confirm");
    });
}

/// The one display of progress; without a window it is what the command itself answers.
struct Progress {
    bool shown = false;
    int least = 0, most = 100, at = 0;
    std::string title, status;
};

Answer Query(const Progress& progress, const ParsedFlags& flags) {
    if (flags.IsSet("progress")) return Value(progress.at);
    if (flags.IsSet("status")) return Value(progress.status);
    if (flags.IsSet("title")) return Value(progress.title);
    if (flags.IsSet("minValue")) return Value(progress.least);
    if (flags.IsSet("maxValue")) return Value(progress.most);
    return Value(progress.shown);
}

Answer Edit(Progress& progress, const ParsedFlags& flags) {
    if (flags.IsSet("endProgress")) {
        progress = Progress();
        return Value(true);
    }
    const bool beginning = !flags.IsEdit();
    if (beginning == progress.shown) return Value(false);
    progress.shown = true;
    if (flags.IsSet("minValue")) progress.least = flags.Get("minValue").AsInt();
    if (flags.IsSet("maxValue")) progress.most = flags.Get("maxValue").AsInt();
    if (flags.IsSet("progress")) progress.at = flags.Get("progress").AsInt();
    if (flags.IsSet("step")) progress.at += flags.Get("step").AsInt();
    if (flags.IsSet("title")) progress.title = flags.Get("title").AsString();
    if (flags.IsSet("status")) progress.status = flags.Get("status").AsString();
    return Value(true);
}

void AddProgress(Host& host) {
    Syntax syntax;
    syntax.AddFlag("t", "title", {Argument::String});
    syntax.AddFlag("st", "status", {Argument::String});
    syntax.AddFlag("min", "minValue", {Argument::Int});
    syntax.AddFlag("max", "maxValue", {Argument::Int});
    syntax.AddFlag("pr", "progress", {Argument::Int});
    syntax.AddFlag("s", "step", {Argument::Int});
    syntax.AddFlag("ii", "isInterruptable", {Argument::Boolean});
    syntax.AddFlag("ep", "endProgress");
    syntax.EnableQuery(true);
    syntax.EnableEdit(true);
    AddQuestion(host, "progressWindow", std::move(syntax),
                [progress = std::make_shared<Progress>()](const ParsedFlags& flags) {
                    return flags.IsQuery() ? Query(*progress, flags) : Edit(*progress, flags);
                });
}

}  // namespace

void AddHostCommands(Host& host) {
    AddUndo(host);
    AddModules(host);
    AddTools(host);
    AddDialogs(host);
    AddProgress(host);
}

}  // namespace minihost
