#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

void TakeSize(const ParsedFlags& flags, PictureOptions& options) {
    if (!flags.IsSet("size")) return;
    options.width = flags.Get("size", 0).AsInt();
    options.height = flags.Get("size", 1).AsInt();
}

/// Draws what is asked for into a file; the file's name.
Answer WriteView(Host& host, const ParsedFlags& flags) {
    PictureOptions options;
    if (flags.IsSet("camera")) options.camera = flags.Get("camera").AsString();
    TakeSize(flags, options);
    if (flags.IsSet("samples")) options.samples = flags.Get("samples").AsInt();
    Picture picture;
    std::string why = host.views.Draw(options, picture);
    const std::string path = flags.Get("fileName").AsString();
    if (why.empty()) why = WritePicture(path, picture);
    if (!why.empty()) return CommandError{why};
    return Value(path);
}

void AddRefresh(Host& host) {
    Syntax syntax;
    syntax.AddFlag("f", "force");
    syntax.AddFlag("cv", "currentView");
    syntax.AddFlag("fn", "fileName", {Argument::String});
    syntax.AddFlag("cam", "camera", {Argument::String});
    syntax.AddFlag("sz", "size", {Argument::Int, Argument::Int});
    syntax.AddFlag("sam", "samples", {Argument::Int});
    AddQuestion(host, "refresh", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
        host.listeners.Tell({"Event", "refresh"});
        if (flags.IsSet("fileName")) return WriteView(host, flags);
        for (const char* flag : {"camera", "size", "samples"})
            if (flags.IsSet(flag))
                return CommandError{std::string("refresh: -") + flag +
                                    " is of a picture: give -fileName too"};
        return {};
    });
}

void AddViewFit(Host& host) {
    Syntax syntax;
    syntax.SetObjects(0, 1);
    syntax.AddFlag("all", "allObjects");
    syntax.AddFlag("sz", "size", {Argument::Int, Argument::Int});
    AddQuestion(host, "viewFit", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
        std::vector<NodePtr> nodes;
        if (!flags.IsSet("all"))
            for (const Selected& selected : host.scene.selection) nodes.push_back(selected.node);
        PictureOptions options;
        TakeSize(flags, options);
        if (options.width < 1 || options.height < 1)
            return CommandError{"viewFit: a size is two numbers above 0"};
        if (!flags.Objects().empty()) options.camera = flags.Objects()[0].AsString();
        if (const std::string why = host.views.Frame(options, nodes); !why.empty())
            return CommandError{why};
        return {};
    });
}

}  // namespace

void AddViewCommands(Host& host) {
    AddRefresh(host);
    AddViewFit(host);
}

}  // namespace minihost
