#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "minihost/command/Interpreter.h"
#include "minihost/command/builtins/Builtins.h"

/// Runs scripts and keeps what they say.
namespace kelmo_tests {

/// An interpreter with the commands that need no scene.
class ScriptRun : public minihost::ScriptOutput {
  public:
    ScriptRun() : interpreter(commands, *this) {
        minihost::AddBuiltins(commands, {"7", false, "/user"});
    }

    void Print(std::string_view text) override { printed += text; }
    void Info(std::string_view text) override { messages += "I:" + std::string(text) + "\n"; }
    void Warning(std::string_view text) override { messages += "W:" + std::string(text) + "\n"; }
    void Error(std::string_view text) override { messages += "E:" + std::string(text) + "\n"; }

    /// The results of the top-level statements with " | " between, then the error.
    std::string operator()(const std::string& text, bool interactive = false) {
        std::string all;
        const auto result =
            interpreter.Execute(text, {"s", interactive, [&](const minihost::Value& value) {
                                           all += (all.empty() ? "" : " | ") + value.AsString();
                                       }});
        return result.error ? all + "!" + result.error->Text() : all;
    }

    minihost::CommandTable commands;
    minihost::Interpreter interpreter;
    std::string printed, messages;
};

/// What a script on its own gives.
inline std::string Results(const std::string& text) {
    return ScriptRun()(text);
}

}  // namespace kelmo_tests
