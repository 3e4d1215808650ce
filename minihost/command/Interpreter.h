#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "minihost/command/CommandTable.h"
#include "minihost/command/Context.h"
#include "minihost/command/ScriptError.h"
#include "minihost/command/ScriptOutput.h"
#include "minihost/command/StatementScope.h"
#include "minihost/command/Variable.h"

namespace minihost {

class Statement;
struct Procedure;

/// How far scripts may go. What is over ends with an error that `catch` does not hold up.
struct ScriptLimits {
    /// Expressions and statements inside each other, through all calls. The stack of a thread is
    /// sized for this.
    int depth = 2500;
    /// Statements, rounds of loops and calls, counted from the start of the outermost script; 0:
    /// any number.
    uint64_t steps = 0;
    /// Elements of an array.
    size_t elements = size_t{1} << 26;
    /// Bytes of a text.
    size_t text = size_t{1} << 28;
};

/// What a script is run as.
struct ScriptSource {
    /// What errors call it: a path, "<stdin>".
    std::string name = "<script>";
    /// Whether it is a piece of what somebody types: what it defines is there for the next piece.
    bool interactive = false;
    /// Takes the result of each top-level statement that has one. May be null.
    std::function<void(const Value&)> onResult;
};

/// Reads and runs scripts, with the global variables and procedures that they leave behind. It may
/// be entered again by a command that it runs. Not for use by several threads.
class Interpreter {
  public:
    /// Both must outlive it.
    Interpreter(CommandTable& commands, ScriptOutput& output)
        : commands_(commands), output_(output) {}

    struct Result {
        /// Of the last statement; Nothing when it had none.
        Value value;
        std::optional<ScriptError> error;
    };
    /// Reads all of a script, then runs it. A script that can't be read does nothing. The first
    /// statement that fails ends it; what came before stays done, unless the statement scope takes
    /// it back.
    Result Execute(std::string_view text, const ScriptSource& source = {});
    /// The same for a file. A file that can't be read is an error at line 1, column 1.
    Result ExecuteFile(const std::string& path, const ScriptSource& source = {});

    /// Keeps a script for the next RunDeferred().
    void Defer(std::string text) { deferred_.push_back(std::move(text)); }
    /// Runs what was deferred, and what that defers, in the order that it came; a failing script
    /// ends only itself. The errors, in order.
    std::vector<ScriptError> RunDeferred();

    /// Null: statements are not scoped. The scope must outlive its use here.
    void SetStatementScope(StatementScope* scope) { scope_ = scope; }
    /// Is asked every few steps whether to stop the script; may be null.
    void SetStop(std::function<bool()> stop) { stop_ = std::move(stop); }
    ScriptLimits& Limits() { return limits_; }

    CommandTable& Commands() { return commands_; }
    ScriptOutput& Output() { return output_; }
    GlobalVariables& Globals() { return globals_; }
    /// "Command", "Mel procedure entered interactively.", "Mel procedure found in: PATH", of
    /// "$name" "int variable" and its like, or "Unknown".
    std::string WhatIs(std::string_view name) const;
    /// The names of all commands and procedures, sorted.
    std::vector<std::string> Names() const;
    /// "string[] f(int $a)" of a script's procedure, the usage of a command; empty for others.
    std::string Usage(std::string_view name) const;

    // What running scripts use.

    /// Counts one step; throws ScriptFailure where a limit is reached or the user stops the script.
    void Step(const Context& context, const Position& position);
    /// Null when there is none.
    const Procedure* FindProcedure(const Script& script, std::string_view name) const;
    void Define(std::shared_ptr<const Script> script, std::shared_ptr<const Procedure> procedure);
    /// Counts up with every change of commands and procedures.
    uint64_t NamesVersion() const { return commands_.Version() + version_; }
    StatementScope* Scope() const { return scope_; }

    /// One level deeper, as long as it lives.
    class Deeper {
      public:
        Deeper(const Context& context, const Position& position, int levels = 1);
        ~Deeper();
        Deeper(const Deeper&) = delete;
        Deeper& operator=(const Deeper&) = delete;

      private:
        Interpreter& interpreter_;
        int levels_;
    };

  private:
    Value RunScript(const Script& script, const ScriptSource& source);
    void RunTopLevel(const Statement& statement, Context& context, bool scoped);

    CommandTable& commands_;
    ScriptOutput& output_;
    GlobalVariables globals_;
    std::map<std::string, std::shared_ptr<const Procedure>, std::less<>> procedures_;
    std::deque<std::string> deferred_;
    StatementScope* scope_ = nullptr;
    std::function<bool()> stop_;
    ScriptLimits limits_;
    uint64_t version_ = 0, steps_ = 0;
    int depth_ = 0, running_ = 0;
};

}  // namespace minihost
