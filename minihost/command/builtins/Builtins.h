#pragma once

#include <string>

#include "minihost/command/CommandTable.h"
#include "minihost/command/ParsedFlags.h"

namespace minihost {

/// What the commands that tell of their surroundings answer.
struct BuiltinOptions {
    /// `about -version`.
    std::string version;
    /// Whether a user sits before a window: `about -batch` is the contrary.
    bool interactive = false;
    /// The folder of the user's preferences, scripts and icons, without a '/' at its end; empty:
    /// one in the user's home.
    std::string userDirectory;
};

/// Adds all commands that need no scene.
void AddBuiltins(CommandTable& commands, const BuiltinOptions& options);

/// print, error, warning, eval, evalDeferred, whatIs, exists, source, help, conversions of type.
void AddLanguageCommands(CommandTable& commands);
/// Numbers and vectors.
void AddMathCommands(CommandTable& commands);
/// Texts and arrays.
void AddTextCommands(CommandTable& commands);
/// getenv, internalVar, about, optionVar, timerX.
void AddSystemCommands(CommandTable& commands, const BuiltinOptions& options);

/// Adds a command that takes from `least` to `most` arguments; another number is an error that
/// quotes the usage.
void AddCounted(CommandTable& commands, std::string name, std::string usage, size_t least,
                size_t most, CommandFunction function, bool byReference = false);

/// Adds a command whose words a syntax sorts; its usage tells the flags.
void AddParsed(CommandTable& commands, std::string name, Syntax syntax,
               std::function<Answer(CommandCall&, const ParsedFlags&)> function);

}  // namespace minihost
