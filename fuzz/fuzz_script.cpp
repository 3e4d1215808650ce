// Any text must run or be refused, within its limits, and do the same when it is run again.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "minihost/command/Interpreter.h"
#include "minihost/command/builtins/Builtins.h"

using namespace minihost;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

class Collected : public ScriptOutput {
  public:
    void Print(std::string_view text) override { Keep(text); }
    void Info(std::string_view text) override { Keep(text); }
    void Warning(std::string_view text) override { Keep(text); }
    void Error(std::string_view text) override { Keep(text); }

    std::string text;

  private:
    void Keep(std::string_view added) {
        if (text.size() < 100000) text += added;
    }
};

/// What is open must be closed again, whatever happens in between.
class Counted : public StatementScope {
  public:
    ~Counted() override { Demand(open_ == 0); }
    void Begin() override { ++open_; }
    void Commit() override { Demand(open_-- > 0); }
    void Rollback() override { Demand(open_-- > 0); }

  private:
    int open_ = 0;
};

/// All that a script says, and its error.
std::string Run(std::string_view text) {
    CommandTable commands;
    AddBuiltins(commands, {"1", false, "/user"});
    // They read files and the clock.
    for (const char* const name : {"source", "timerX"}) Demand(commands.Remove(name));
    Collected output;
    Counted scope;
    Interpreter interpreter(commands, output);
    interpreter.SetStatementScope(&scope);
    interpreter.Limits().steps = 3000;
    interpreter.Limits().elements = 1000;
    interpreter.Limits().text = 10000;
    int asked = 0;
    interpreter.SetStop([&] { return ++asked > 50; });
    const auto result = interpreter.Execute(
        text, {"<fuzz>", false, [&](const Value& value) { output.Print(value.AsString()); }});
    const auto deferred = interpreter.RunDeferred();
    if (!result.error) return output.text + result.value.AsString();
    Demand(result.error->position.line > 0 && result.error->position.column > 0);
    Demand(!result.error->message.empty());
    return output.text + result.error->Text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Demand(Run(text) == Run(text));
    return 0;
}
