#include <fmt/core.h>

#include <iostream>
#include <iterator>

#include "app/cli/Commands.h"
#include "app/cli/ModuleHost.h"
#include "app/cli/Prompt.h"
#include "minihost/Host.h"
#include "minihost/command/builtins/Builtins.h"

namespace kelmo {

namespace {

using minihost::Interpreter;

void PrintResult(const minihost::Value& result) {
    fmt::print("{}\n", result.AsString());
}

/// Tells the errors; whether there were none.
bool Report(const std::vector<minihost::ScriptError>& errors) {
    std::fflush(stdout);
    for (const minihost::ScriptError& error : errors) Fail(error.Text());
    return errors.empty();
}

/// Tells how a script ended, after what it deferred; whether all went well.
bool Finish(Interpreter& interpreter, const Interpreter::Result& result) {
    bool good = !result.error || Report({*result.error});
    if (!Report(interpreter.RunDeferred())) good = false;
    minihost::Host::Get().Turn();
    std::fflush(stdout);
    return good;
}

bool RunOnce(Interpreter& interpreter, const RunOptions& options) {
    minihost::ScriptSource source;
    if (options.results) source.onResult = PrintResult;
    if (options.commands) {
        source.name = "<commands>";
        return Finish(interpreter, interpreter.Execute(*options.commands, source));
    }
    if (options.script != "-")
        return Finish(interpreter, interpreter.ExecuteFile(options.script, source));
    source.name = "<stdin>";
    const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
    return Finish(interpreter, interpreter.Execute(text, source));
}

/// Runs what is typed, statement by statement; one that goes on in the next line waits for it, an
/// empty line ends the waiting.
void Converse(Interpreter& interpreter) {
    Prompt prompt([&] { return interpreter.Names(); });
    const minihost::ScriptSource source{"<stdin>", true, PrintResult};
    std::string text, line;
    while (prompt.ReadLine(text.empty() ? "kelmo> " : "     > ", line)) {
        ClearInterrupt();
        const bool more = line.find_first_not_of(" \t") != line.npos;
        text += line + "\n";
        const Interpreter::Result result = interpreter.Execute(text, source);
        if (result.error && result.error->atEnd && more) continue;
        Finish(interpreter, result);
        text.clear();
    }
}

}  // namespace

int RunScript(const RunOptions& options) {
    minihost::Host& host = minihost::Host::Get();
    host.interactive = options.interactive;
    minihost::AddBuiltins(host.commands, {"", options.interactive, ""});
    host.interpreter.SetStop(IsInterrupted);
    std::string error;
    if (!options.noModule && !LoadModule(host, error))
        return Fail(error + "; --no-module runs scripts without it");
    const bool given = options.commands || !options.script.empty();
    if (given && !RunOnce(host.interpreter, options)) return 1;
    if (options.interactive) Converse(host.interpreter);
    return 0;
}

}  // namespace kelmo
