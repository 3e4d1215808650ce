#include <fmt/core.h>

#include <filesystem>
#include <iostream>
#include <iterator>

#include "app/cli/Commands.h"
#include "app/cli/InterfaceProcedures.h"
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

/// Keeps what a module tells while it loads.
class Kept : public minihost::ScriptOutput {
  public:
    void Print(std::string_view text) override { text_ += text; }
    void Info(std::string_view text) override { text_.append(text) += "\n"; }
    void Warning(std::string_view text) override { Info(text); }
    void Error(std::string_view text) override { Info(text); }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// Loads the module that lies beside the program; false, with the reason and what the module told
/// on standard error, where that fails.
bool LoadModule(minihost::Host& host) {
    AddInterfaceProcedures(host.commands);
    std::error_code unknown;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    Kept kept;
    host.SetOutput(&kept);
    const std::string why = host.modules.Load(program.parent_path() / "kelmo.so");
    host.SetOutput(nullptr);
    if (why.empty()) return true;
    Fail(kept.text() + why + "; --no-module runs scripts without it");
    return false;
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
    if (!options.noModule && !LoadModule(host)) return 1;
    const bool given = options.commands || !options.script.empty();
    if (given && !RunOnce(host.interpreter, options)) return 1;
    if (options.interactive) Converse(host.interpreter);
    return 0;
}

}  // namespace kelmo
