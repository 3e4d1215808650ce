#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>

#include "minihost/command/builtins/Builtins.h"

namespace minihost {

namespace {

namespace fs = std::filesystem;
using Argument = Syntax::Argument;

std::string Environment(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value ? value : "";
}

/// Folders, each with a '/' at its end.
void AddInternalVar(CommandTable& commands, const std::string& userDirectory) {
    struct Folder {
        const char *shortName, *longName, *path;
    };
    static constexpr std::array<Folder, 4> kUserFolders = {{{"uad", "userAppDir", "/"},
                                                            {"upd", "userPrefDir", "/prefs/"},
                                                            {"usd", "userScriptDir", "/scripts/"},
                                                            {"ubd", "userBitmapsDir", "/icons/"}}};
    Syntax syntax;
    syntax.AddFlag("utd", "userTmpDir");
    syntax.AddFlag("uwd", "userWorkspaceDir");
    for (const Folder& folder : kUserFolders) syntax.AddFlag(folder.shortName, folder.longName);
    AddParsed(commands, "internalVar", syntax,
              [userDirectory](CommandCall&, const ParsedFlags& flags) -> Answer {
                  std::error_code failed;
                  if (flags.IsSet("userTmpDir"))
                      return fs::temp_directory_path(failed).string() + "/";
                  if (flags.IsSet("userWorkspaceDir"))
                      return fs::current_path(failed).string() + "/";
                  for (const Folder& folder : kUserFolders)
                      if (flags.IsSet(folder.longName)) return userDirectory + folder.path;
                  return CommandError{"internalVar: name the folder by a flag"};
              });
}

void AddAbout(CommandTable& commands, const BuiltinOptions& options) {
    Syntax syntax;
    syntax.AddFlag("v", "version");
    syntax.AddFlag("b", "batch");
    syntax.AddFlag("os", "operatingSystem");
    AddParsed(commands, "about", syntax,
              [options](CommandCall&, const ParsedFlags& flags) -> Answer {
                  if (flags.IsSet("version")) return options.version;
                  if (flags.IsSet("batch")) return !options.interactive;
                  if (flags.IsSet("operatingSystem")) return "linux64";
                  return CommandError{"about: name what to tell by a flag"};
              });
}

using OptionVars = std::map<std::string, Value>;

Answer QueryOptionVar(const OptionVars& vars, const ParsedFlags& flags) {
    if (flags.Objects().size() != 1) return CommandError{"optionVar: name one variable to query"};
    const auto found = vars.find(flags.Objects()[0].AsString());
    return found == vars.end() ? Value(0) : found->second;
}

Answer EditOptionVars(OptionVars& vars, const ParsedFlags& flags) {
    for (const char* const kind : {"intValue", "floatValue", "stringValue"})
        for (size_t use = 0; use < flags.Uses(kind); ++use)
            vars[flags.Get(kind, 0, use).AsString()] = flags.Get(kind, 1, use);
    for (size_t use = 0; use < flags.Uses("remove"); ++use)
        vars.erase(flags.Get("remove", 0, use).AsString());
    if (flags.IsSet("exists")) return vars.count(flags.Get("exists").AsString()) > 0;
    if (!flags.IsSet("list")) return {};
    std::vector<std::string> names;
    for (const auto& [name, value] : vars) names.push_back(name);
    return names;
}

/// Variables that outlast a scene; they live as long as the program.
void AddOptionVar(CommandTable& commands) {
    Syntax syntax;
    syntax.EnableQuery(true);
    syntax.SetObjects(0, 1);
    syntax.AddFlag("iv", "intValue", {Argument::String, Argument::Int});
    syntax.AddFlag("fv", "floatValue", {Argument::String, Argument::Float});
    syntax.AddFlag("sv", "stringValue", {Argument::String, Argument::String});
    syntax.AddFlag("rm", "remove", {Argument::String});
    for (const char* const name : {"iv", "fv", "sv", "rm"}) syntax.Find(name)->multiUse = true;
    syntax.AddFlag("ex", "exists", {Argument::String});
    syntax.AddFlag("l", "list");
    AddParsed(commands, "optionVar", syntax,
              [vars = std::make_shared<OptionVars>()](CommandCall&, const ParsedFlags& flags) {
                  return flags.IsQuery() ? QueryOptionVar(*vars, flags)
                                         : EditOptionVars(*vars, flags);
              });
}

/// Seconds since some moment, or since the time that it gave earlier.
void AddTimer(CommandTable& commands) {
    Syntax syntax;
    syntax.AddFlag("st", "startTime", {Argument::Float});
    AddParsed(commands, "timerX", syntax, [](CommandCall&, const ParsedFlags& flags) -> Answer {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration<double>(now).count() - flags.Get("startTime").AsFloat();
    });
}

}  // namespace

void AddSystemCommands(CommandTable& commands, const BuiltinOptions& options) {
    AddCounted(commands, "getenv", "getenv NAME", 1, 1,
               [](CommandCall& call) -> Answer { return Environment(call.Text(0)); });
    AddInternalVar(commands, options.userDirectory.empty()
                                 ? Environment("HOME") + "/.local/share/minihost"
                                 : options.userDirectory);
    AddAbout(commands, options);
    AddOptionVar(commands);
    AddTimer(commands);
}

}  // namespace minihost
