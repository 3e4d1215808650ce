#include "minihost/command/Interpreter.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <sstream>

#include "minihost/command/Parser.h"
#include "minihost/command/Statements.h"

namespace minihost {

namespace {

/// A script that a command runs costs the stack more than an expression does.
constexpr int kDepthOfScript = 16;
/// How many steps lie between two questions whether to stop.
constexpr uint64_t kStepsBetweenStops = 256;

}  // namespace

void Context::Fail(const Position& position, std::string message) const {
    throw ScriptFailure{{script.source, position, std::move(message), {}}};
}

Interpreter::Deeper::Deeper(const Context& context, const Position& position, int levels)
    : interpreter_(context.interpreter), levels_(levels) {
    if (interpreter_.depth_ + levels > interpreter_.limits_.depth)
        throw ScriptFailure{{context.script.source,
                             position,
                             "calls and expressions are nested too deeply; does a procedure call "
                             "itself without end?",
                             {}},
                            true};
    interpreter_.depth_ += levels;
}

Interpreter::Deeper::~Deeper() {
    interpreter_.depth_ -= levels_;
}

void Interpreter::Step(const Context& context, const Position& position) {
    ++steps_;
    if (limits_.steps != 0 && steps_ > limits_.steps)
        throw ScriptFailure{{context.script.source,
                             position,
                             fmt::format("the script took more than {} steps", limits_.steps),
                             {}},
                            true};
    if (steps_ % kStepsBetweenStops == 0 && stop_ && stop_())
        throw ScriptFailure{{context.script.source, position, "stopped", {}}, true};
}

Interpreter::Result Interpreter::Execute(std::string_view text, const ScriptSource& source) {
    Result result;
    ++running_;
    if (running_ == 1) steps_ = 0;
    try {
        const auto script = Parser(text, source, globals_).ReadScript();
        result.value = RunScript(*script, source);
    } catch (ScriptFailure& failure) {
        result.error = std::move(failure.error);
    } catch (const std::bad_alloc&) {
        result.error = ScriptError{source.name, {}, "there is not enough memory", {}};
    } catch (const std::exception& failure) {
        result.error = ScriptError{source.name, {}, failure.what(), {}};
    }
    --running_;
    return result;
}

Interpreter::Result Interpreter::ExecuteFile(const std::string& path, const ScriptSource& source) {
    ScriptSource named = source;
    named.name = path;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown))
        return {{}, ScriptError{path, {}, "is a folder, not a script", {}}};
    if (!file || (text << file.rdbuf()).bad())
        return {{},
                ScriptError{path, {}, fmt::format("can't be read: {}", std::strerror(errno)), {}}};
    return Execute(text.str(), named);
}

Value Interpreter::RunScript(const Script& script, const ScriptSource& source) {
    Context context{*this, script, std::vector<Variable>(script.locals), {}};
    const bool outermost = running_ == 1;
    const Deeper deeper(context, {}, outermost ? 1 : kDepthOfScript);
    for (const StatementPtr& statement : script.statements) {
        context.result = {};
        RunTopLevel(*statement, context, outermost);
        if (source.onResult && !context.result.IsNone()) source.onResult(context.result);
    }
    return std::move(context.result);
}

void Interpreter::RunTopLevel(const Statement& statement, Context& context, bool scoped) {
    StatementScope* const scope = scoped ? scope_ : nullptr;
    if (scope) scope->Begin();
    try {
        statement.Run(context);
    } catch (...) {
        if (scope) scope->Rollback();
        throw;
    }
    if (scope) scope->Commit();
}

std::vector<ScriptError> Interpreter::RunDeferred() {
    std::vector<ScriptError> errors;
    while (!deferred_.empty()) {
        const std::string text = std::move(deferred_.front());
        deferred_.pop_front();
        Result result = Execute(text, {"<deferred>", false, nullptr});
        if (result.error) errors.push_back(std::move(*result.error));
        if (stop_ && stop_()) deferred_.clear();
    }
    return errors;
}

const Procedure* Interpreter::FindProcedure(const Script& script, std::string_view name) const {
    const auto local = script.procedures.find(name);
    if (local != script.procedures.end()) return local->second.get();
    const auto global = procedures_.find(name);
    return global == procedures_.end() ? nullptr : global->second.get();
}

void Interpreter::Define(std::shared_ptr<const Script> script,
                         std::shared_ptr<const Procedure> procedure) {
    const std::string& name = procedure->name;
    if (procedure->global) {
        // It lives in its script, and keeps it.
        procedures_[name] = {std::move(script), procedure.get()};
    } else {
        script->procedures[name] = std::move(procedure);
    }
    ++version_;
}

std::string Interpreter::WhatIs(std::string_view name) const {
    if (name.starts_with('$')) {
        const auto found = globals_.find(name.substr(1));
        if (found == globals_.end() || !found->second.IsDeclared()) return "Unknown";
        return fmt::format("{} variable", TypeName(found->second.type));
    }
    const auto procedure = procedures_.find(name);
    if (procedure != procedures_.end()) {
        const std::string& source = procedure->second->script->source;
        return source.starts_with('<') ? "Mel procedure entered interactively."
                                       : "Mel procedure found in: " + source;
    }
    const auto entry = commands_.Find(name);
    if (!entry) return "Unknown";
    return entry->kind == CommandEntry::Kind::Command ? "Command"
                                                      : "Mel procedure entered interactively.";
}

std::vector<std::string> Interpreter::Names() const {
    std::vector<std::string> names = commands_.Names();
    for (const auto& [name, procedure] : procedures_)
        if (!commands_.Find(name)) names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

std::string Interpreter::Usage(std::string_view name) const {
    const auto procedure = procedures_.find(name);
    if (procedure != procedures_.end()) return procedure->second->Signature();
    const auto entry = commands_.Find(name);
    return entry ? entry->usage : std::string();
}

}  // namespace minihost
