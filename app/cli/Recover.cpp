#include <fmt/core.h>

#include <algorithm>

#include "app/cli/Commands.h"
#include "app/session/SessionKeeper.h"
#include "minihost/Host.h"
#include "minihost/command/builtins/Builtins.h"

namespace kelmo {

namespace {

void List(const std::vector<LeftSession>& left) {
    for (const LeftSession& session : left)
        fmt::print("{}  {}  {} strokes  {}\n", session.id(), session.record.began, session.strokes,
                   session.record.file.empty() ? "(not saved yet)" : session.record.file);
}

const LeftSession* Choose(const std::vector<LeftSession>& left, const std::string& id) {
    if (id.empty()) return left.size() == 1 ? &left[0] : nullptr;
    for (const LeftSession& session : left)
        if (session.id() == id) return &session;
    return nullptr;
}

bool HasEnding(const std::string& path, std::initializer_list<const char*> endings) {
    return std::ranges::any_of(endings, [&](const char* ending) { return path.ends_with(ending); });
}

/// The scene, or with the sessions closed, which show what came in, as OBJ the meshes at the levels
/// that are worked on.
bool WriteOut(minihost::Host& host, const std::string& path, std::string& error) {
    const bool obj = HasEnding(path, {".obj"});
    const std::string script =
        obj ? "for ($node in `ls -type KelmoND`) { setAttr ($node + \".commnad\") 91;"
              "setAttr ($node + \".execute0\") 1; int $level = `getAttr ($node + \".param0\")`;"
              "setAttr ($node + \".numRenderSubdivLvls\") $level;"
              "setAttr ($node + \".commnad\") 1; setAttr ($node + \".execute\") 1; };"
              "file -exportAll " +
                  ScriptText(path)
            : "file -rename " + ScriptText(path) + "; file -save";
    const auto done = host.interpreter.Execute(script);
    if (done.error) error = done.error->message;
    return !done.error;
}

int Recover(const LeftSession& session, const std::string& out) {
    minihost::Host& host = minihost::Host::Get();
    minihost::AddBuiltins(host.commands, {"", false, ""});
    std::string error;
    if (!LoadModule(host, error)) return Fail(error);
    KeptOutput kept;
    host.SetOutput(&kept);
    const bool done = RecoverSession(host, session, error) && WriteOut(host, out, error);
    host.SetOutput(nullptr);
    if (!done)
        return Fail(fmt::format("{}: {}\nThe session is left where it was, in {}.", session.id(),
                                error, session.folder.string()));
    fmt::print("{}: {} strokes, written to {}.\n", session.id(), session.strokes, out);
    return 0;
}

}  // namespace

int RunRecover(const RecoverOptions& options) {
    const std::vector<LeftSession> left = FindLeftSessions();
    if (left.empty()) {
        fmt::print("Nothing was left by a crash.\n");
        return options.out.empty() && options.session.empty() ? 0 : 1;
    }
    if (options.out.empty() && !options.forget) {
        List(left);
        return 0;
    }
    const LeftSession* session = Choose(left, options.session);
    if (!session)
        return Fail(options.session.empty()
                        ? "several sessions were left; say which one: kelmo recover lists them"
                        : options.session + ": there is no such session; kelmo recover lists them");
    if (!options.out.empty() && !HasEnding(options.out, {".mhs", ".mhb", ".obj"}))
        return Fail(options.out + ": give it the ending of a scene (.mhs, .mhb) or a mesh (.obj)");
    if (!options.out.empty())
        if (const int failure = Recover(*session, options.out)) return failure;
    if (options.forget) ForgetSession(*session);
    return 0;
}

}  // namespace kelmo
