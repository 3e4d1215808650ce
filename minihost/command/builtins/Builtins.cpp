#include "minihost/command/builtins/Builtins.h"

#include <fmt/core.h>

namespace minihost {

void AddBuiltins(CommandTable& commands, const BuiltinOptions& options) {
    AddLanguageCommands(commands);
    AddMathCommands(commands);
    AddTextCommands(commands);
    AddSystemCommands(commands, options);
}

void AddCounted(CommandTable& commands, std::string name, std::string usage, size_t least,
                size_t most, CommandFunction function, bool byReference) {
    CommandFunction counted = [usage, least, most,
                               function = std::move(function)](CommandCall& call) -> Answer {
        const size_t count = call.arguments.size();
        if (count < least || count > most)
            return CommandError{
                fmt::format("{} arguments are given; it is called as: {}", count, usage)};
        return function(call);
    };
    commands.Add({std::move(name), std::move(counted), CommandEntry::Kind::Command,
                  std::move(usage), byReference});
}

void AddParsed(CommandTable& commands, std::string name, Syntax syntax,
               std::function<Answer(CommandCall&, const ParsedFlags&)> function) {
    std::string usage = syntax.Usage(name);
    commands.Add(
        std::move(name), std::move(usage),
        [syntax = std::move(syntax), function = std::move(function)](CommandCall& call) -> Answer {
            CommandError error;
            const auto parsed = ParsedFlags::Parse(syntax, call.name, call.arguments, error);
            return parsed ? function(call, *parsed) : Answer(error);
        });
}

}  // namespace minihost
