#include <benchmark/benchmark.h>

#include <string>

#include "minihost/command/Interpreter.h"
#include "minihost/command/builtins/Builtins.h"

using namespace minihost;

namespace {

/// An interpreter, and a command that does nothing.
struct Host {
    Host() : interpreter(commands, output) {
        AddBuiltins(commands, {});
        commands.Add("nothing", "nothing", [](CommandCall&) -> Answer { return {}; });
    }

    CommandTable commands;
    ScriptOutput output;
    Interpreter interpreter;
};

/// Runs a script over and over; the items are its statements.
void RunScript(benchmark::State& state, const std::string& script, int64_t statements) {
    Host host;
    for (auto _ : state)
        if (const auto result = host.interpreter.Execute(script); result.error)
            return state.SkipWithError(result.error->Text().c_str());
    state.SetItemsProcessed(state.iterations() * statements);
}

/// A script as a program writes it: as many statements, read and run once each.
void ScriptOfStatements(benchmark::State& state) {
    const int64_t statements = state.range(0);
    std::string script = "int $a = 0;\n";
    for (int64_t i = 1; i < statements; ++i)
        script += i % 2 == 0 ? "nothing -name \"head\" -at 1.5 -2 3 head.vtx[0:3];\n"
                             : "$a = ($a + " + std::to_string(i) + ") % 1000;\n";
    RunScript(state, script, statements);
}

/// Calls of a command with four words, in a loop.
void ScriptCommandCalls(benchmark::State& state) {
    RunScript(
        state,
        "for ($i = 0; $i < " + std::to_string(state.range(0)) + "; $i++) nothing -at $i 2 head;",
        state.range(0));
}

/// Calls of a procedure that adds two numbers, in a loop.
void ScriptProcedureCalls(benchmark::State& state) {
    RunScript(state,
              "proc int add(int $a, int $b) { return $a + $b; } $s = 0;"
              "for ($i = 0; $i < " +
                  std::to_string(state.range(0)) + "; $i++) $s = add($i, 1);",
              state.range(0));
}

/// Writes to and reads from an array that grows, in a loop.
void ScriptArray(benchmark::State& state) {
    RunScript(state,
              "int $a[]; clear $a; for ($i = 0; $i < " + std::to_string(state.range(0)) +
                  "; $i++) $a[size($a)] = $i + $a[$i / 2];",
              state.range(0));
}

BENCHMARK(ScriptOfStatements)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ScriptCommandCalls)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ScriptProcedureCalls)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ScriptArray)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
