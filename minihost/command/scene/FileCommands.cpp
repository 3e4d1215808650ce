#include <filesystem>

#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/scene/SceneFile.h"
#include "minihost/shade/ObjScene.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

bool IsObj(const std::string& path) {
    return path.ends_with(".obj") || path.ends_with(".OBJ");
}

/// Warns of what is not as the file says; the file's name, or why it could not be done.
Answer Told(Host& host, const FileResult& result, const std::string& path) {
    for (const std::string& warning : result.warnings) host.output().Warning(warning);
    return result.done ? Answer(Value(path)) : Answer(CommandError{result.error});
}

Answer Import(Host& host, const std::string& path, const std::string& prefix) {
    if (!IsObj(path)) return Told(host, ImportScene(host, path, prefix), path);
    const auto tell = [&host](SceneMessage message) {
        host.listeners.Tell({"Scene", std::to_string(static_cast<int>(message))});
    };
    tell(SceneMessage::BeforeImport);
    const auto edits = std::make_shared<Modifier>(host.scene);
    std::string error;
    const auto transforms = ImportObj(*edits, path, error);
    if (transforms.empty()) {
        edits->Undo();
        return CommandError{error};
    }
    host.undo.Add(edits);
    tell(SceneMessage::AfterImport);
    std::vector<std::string> names;
    for (const NodePtr& node : transforms) names.push_back(node->UniqueName());
    return Value(std::move(names));
}

/// The meshes that are selected, at or below what is; all shown ones where nothing is.
std::vector<NodePtr> MeshesToWrite(Host& host, bool selectedOnly) {
    std::vector<NodePtr> meshes;
    const auto collect = [&meshes](auto&& self, DagNode& node) -> void {
        const bool hidden = NumberOf(Pull(*node.FindSlot("intermediateObject"))) != 0;
        if (node.Is(MFn::kMesh) && !hidden) meshes.push_back(node.Share());
        for (const DagNodePtr& child : node.children()) self(self, *child);
    };
    if (!selectedOnly)
        for (const DagNodePtr& top : host.scene.world().children()) collect(collect, *top);
    else
        for (const Selected& item : host.scene.selection)
            if (auto* dag = dynamic_cast<DagNode*>(item.node.get())) collect(collect, *dag);
    return meshes;
}

Answer Export(Host& host, const std::string& path, bool selectedOnly) {
    if (!IsObj(path))
        return CommandError{
            "meshes are exported as .obj; scenes are saved with file -rename PATH "
            "and file -save"};
    const auto meshes = MeshesToWrite(host, selectedOnly);
    if (meshes.empty()) return CommandError{"there is no mesh to export"};
    std::string error;
    return ExportObj(meshes, path, error) ? Answer(Value(path)) : CommandError{error};
}

Answer Query(Host& host, const ParsedFlags& flags) {
    if (flags.IsSet("exists")) {
        std::error_code failed;
        return Value(std::filesystem::exists(flags.Get("exists").AsString(), failed));
    }
    const std::string& path = host.file.path;
    if (flags.IsSet("shortName")) return Value(std::filesystem::path(path).filename().string());
    return Value(path);
}

Answer File(Host& host, const ParsedFlags& flags) {
    if (flags.IsQuery()) return Query(host, flags);
    const std::string path = flags.Objects().empty() ? "" : flags.Objects()[0].AsString();
    if (flags.IsSet("new")) {
        NewScene(host);
        return {};
    }
    if (flags.IsSet("save")) return Told(host, SaveScene(host), host.file.path);
    const bool needsPath = flags.IsSet("open") || flags.IsSet("import") || flags.IsSet("rename") ||
                           flags.IsSet("exportAll") || flags.IsSet("exportSelected");
    if (!needsPath)
        return CommandError{
            "say what to do with -new, -open, -import, -save, -rename, -exportAll "
            "or -exportSelected"};
    if (path.empty()) return CommandError{"say which file"};
    if (flags.IsSet("rename")) {
        RenameScene(host, path);
        return Value(path);
    }
    if (flags.IsSet("open")) return Told(host, OpenScene(host, path), path);
    if (flags.IsSet("import")) {
        const std::string space = flags.Get("namespace").AsString();
        return Import(host, path, space.empty() ? "" : space + ":");
    }
    return Export(host, path, flags.IsSet("exportSelected"));
}

}  // namespace

void AddFileCommands(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"new", "newFile"},
                                      {"o", "open"},
                                      {"i", "import"},
                                      {"s", "save"},
                                      {"rn", "rename"},
                                      {"ea", "exportAll"},
                                      {"es", "exportSelected"},
                                      {"f", "force"},
                                      {"sn", "sceneName"},
                                      {"shn", "shortName"}})
        syntax.AddFlag(brief, name);
    syntax.AddFlag("ns", "namespace", {Argument::String});
    syntax.AddFlag("typ", "type", {Argument::String});
    syntax.AddFlag("ex", "exists", {Argument::String});
    syntax.Find("exists")->queryTakesArguments = true;
    syntax.EnableQuery(true);
    syntax.SetObjects(0, 1);
    AddQuestion(host, "file", std::move(syntax),
                [&host](const ParsedFlags& flags) { return File(host, flags); });
}

}  // namespace minihost
