#pragma once

#include <memory>
#include <string>
#include <vector>

#include "minihost/command/ScriptError.h"
#include "minihost/command/Variable.h"

namespace minihost {

class Interpreter;
class Script;

/// What a running piece of a script sees: one for each call of a procedure, and one for a script's
/// top level.
struct Context {
    Interpreter& interpreter;
    const Script& script;
    /// The local variables, in places that the parser chose.
    std::vector<Variable> locals;
    /// What `return` gave; on the top level what the statement gave.
    Value result;

    /// Throws ScriptFailure.
    [[noreturn]] void Fail(const Position& position, std::string message) const;
};

}  // namespace minihost
