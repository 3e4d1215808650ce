#include <fmt/core.h>

#include "minihost/command/Interpreter.h"
#include "minihost/command/builtins/Builtins.h"

namespace minihost {

namespace {

/// The words as one text, with blanks between.
std::string Joined(const std::vector<Value>& words) {
    std::string text;
    for (const Value& word : words) {
        if (&word != &words.front()) text += ' ';
        text += word.AsString();
    }
    return text;
}

/// An array prints each element on a line of its own.
Answer Print(CommandCall& call) {
    const Value& value = call.arguments[0];
    std::string text;
    if (value.IsArray()) {
        for (const std::string& line : value.AsStrings()) text += line + "\n";
    } else {
        text = value.AsString();
    }
    call.interpreter.Output().Print(text);
    return {};
}

Answer Finished(Interpreter::Result result) {
    if (result.error) return CommandError{result.error->Text()};
    return std::move(result.value);
}

Answer Evaluate(CommandCall& call) {
    return Finished(call.interpreter.Execute(Joined(call.arguments), {"<eval>", false, nullptr}));
}

Answer Source(CommandCall& call) {
    return Finished(call.interpreter.ExecuteFile(call.Text(0)));
}

Answer Help(CommandCall& call) {
    const std::string name = call.Text(0), usage = call.interpreter.Usage(name);
    if (!usage.empty()) return usage;
    if (call.interpreter.WhatIs(name) == "Unknown")
        return CommandError{fmt::format("'{}' is an unknown command or procedure", name)};
    return name;
}

/// `int(value)` and its like.
void AddConversion(CommandTable& commands, Value::Type type) {
    const std::string name(TypeName(type));
    AddCounted(commands, name, name + "(VALUE)", 1, 1, [type](CommandCall& call) -> Answer {
        auto converted = call.arguments[0].To(type);
        if (converted) return std::move(*converted);
        return CommandError{fmt::format("{} can't be made {}",
                                        TypeName(call.arguments[0].GetType()), TypeName(type))};
    });
}

}  // namespace

void AddLanguageCommands(CommandTable& commands) {
    constexpr size_t kAny = ~size_t{0};
    AddCounted(commands, "print", "print VALUE", 1, 1, Print);
    AddCounted(commands, "error", "error TEXT", 1, 1,
               [](CommandCall& call) -> Answer { return CommandError{call.Text(0)}; });
    AddCounted(commands, "warning", "warning TEXT", 1, 1, [](CommandCall& call) -> Answer {
        call.interpreter.Output().Warning(call.Text(0));
        return {};
    });
    AddCounted(commands, "eval", "eval SCRIPT...", 1, kAny, Evaluate);
    AddCounted(commands, "evalDeferred", "evalDeferred SCRIPT...", 1, kAny,
               [](CommandCall& call) -> Answer {
                   call.interpreter.Defer(Joined(call.arguments));
                   return {};
               });
    AddCounted(commands, "whatIs", "whatIs NAME", 1, 1,
               [](CommandCall& call) -> Answer { return call.interpreter.WhatIs(call.Text(0)); });
    AddCounted(commands, "exists", "exists NAME", 1, 1, [](CommandCall& call) -> Answer {
        return !call.Text(0).starts_with('$') && call.interpreter.WhatIs(call.Text(0)) != "Unknown";
    });
    AddCounted(commands, "source", "source FILE", 1, 1, Source);
    AddCounted(commands, "help", "help NAME", 1, 1, Help);
    for (const auto type :
         {Value::Type::Int, Value::Type::Float, Value::Type::String, Value::Type::Vector})
        AddConversion(commands, type);
}

}  // namespace minihost
