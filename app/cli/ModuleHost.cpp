#include "app/cli/ModuleHost.h"

#include <fmt/core.h>

#include <cstdlib>
#include <filesystem>

#include "app/cli/InterfaceProcedures.h"
#include "core/sculpt/LNodeSettings.h"
#include "minihost/command/builtins/Builtins.h"

namespace kelmo {

std::string ScriptText(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "\"";
}

namespace {

/// Sets the node's display attributes.
std::string SetDisplay(const VantrelSDK::LNodeSettings& s) {
    std::string script;
    const auto set = [&](const std::string& name, auto value) {
        script += fmt::format("setAttr ($node + \".{}\") {};\n", name, value);
    };
    set("displayMode", s.displayMode);
    set("affectVertColor", int{s.affectVertColor});
    set("useShaders", int{s.useShaders});
    set("shadowFilter", s.shadowFilter);
    set("shadowAzm", s.shadowAzm);
    set("shadowAlt", s.shadowAlt);
    set("useSpecular", int{s.useSpecular});
    set("useDiffuse", int{s.useDiffuse});
    set("cullBackface", int{s.cullBackface});
    set("objectOpacity", s.objectOpacity);
    set("SSAOradius", s.SSAOradius);
    set("SSAOsamples", s.SSAOsamples);
    set("useShadow[0]", int{s.useShadow[0]});
    set("useSSAO[0]", int{s.useSSAO[0]});
    return script;
}

/// The patterns that come with the program are found behind those of the person's own.
void FindExamples() {
    const char* search = std::getenv("XBMLANGPATH");
    const std::string before = search && *search ? std::string(search) + ":" : "";
    setenv("XBMLANGPATH", (before + KELMO_EXAMPLES "/patterns").c_str(), 1);
}

}  // namespace

bool LoadModule(minihost::Host& host, std::string& error) {
    FindExamples();
    AddInterfaceProcedures(host.commands);
    std::error_code unknown;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    KeptOutput kept;
    host.SetOutput(&kept);
    const std::string why = host.modules.Load(program.parent_path() / "kelmo.so");
    host.SetOutput(nullptr);
    if (!why.empty()) error = kept.text() + why;
    return why.empty();
}

bool DrawPicture(const std::string& obj, const VantrelSDK::LNodeSettings& settings,
                 const PictureFile& picture, std::string& error) {
    minihost::Host& host = minihost::Host::Get();
    minihost::AddBuiltins(host.commands, {"", false, ""});
    if (!LoadModule(host, error)) return false;
    // A session shows what is sculpted in the place of the mesh.
    const std::string script =
        "file -import " + ScriptText(obj) +
        ";\n"
        "string $meshes[] = `ls -type mesh`;\n"
        "string $above[] = `listRelatives -parent $meshes[0]`;\n"
        "select $above[0];\n" +
        fmt::format("viewFit -size {} {} {};\n", picture.width, picture.height,
                    ScriptText(picture.view)) +
        "string $node = `Kelmo -create`;\n" + SetDisplay(settings) +
        "setAttr ($node + \".commnad\") 0;\n"
        "setAttr ($node + \".execute\") 1;\n" +
        fmt::format("refresh -fileName {} -camera {} -size {} {};\n", ScriptText(picture.path),
                    ScriptText(picture.view), picture.width, picture.height);
    KeptOutput kept;
    host.SetOutput(&kept);
    const auto done = host.interpreter.Execute(script);
    host.SetOutput(nullptr);
    if (done.error) error = done.error->message;
    return !done.error;
}

}  // namespace kelmo
