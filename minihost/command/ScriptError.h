#pragma once

#include <string>
#include <vector>

namespace minihost {

/// A place in a script, both counted from 1; columns are bytes.
struct Position {
    int line = 1, column = 1;
};

/// Why a script stopped, and where.
struct ScriptError {
    /// The name that the script was run under: a path, "<stdin>".
    std::string source;
    Position position;
    std::string message;
    /// The calls that led there, innermost first, as "called by source:line:column"; long lists are
    /// cut.
    std::vector<std::string> calls;
    /// Whether more text behind the script could mend it: a block or string without its end.
    bool atEnd = false;

    /// "source:line:column: message", and the calls on lines of their own.
    std::string Text() const;
};

/// A failure on its way from where it happens to the script that catches it. Never leaves the
/// interpreter.
struct ScriptFailure {
    ScriptError error;
    /// Whether `catch` lets it pass: the user stopped the script, or it reached a limit.
    bool final = false;
};

}  // namespace minihost
