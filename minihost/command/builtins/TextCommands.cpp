#include <fmt/core.h>
#include <re2/re2.h>

#include <algorithm>

#include "minihost/command/Interpreter.h"
#include "minihost/command/builtins/Builtins.h"

namespace minihost {

namespace {

using Strings = std::vector<std::string>;

/// Texts are bytes here: positions count them.
const RE2::Options& PatternOptions() {
    static const RE2::Options options = [] {
        RE2::Options made(RE2::Latin1);
        made.set_log_errors(false);
        made.set_longest_match(true);
        return made;
    }();
    return options;
}

/// The part of the second argument that the pattern, the first, fits first; none where it doesn't.
/// False when the pattern is none.
bool FindMatch(const CommandCall& call, const std::string& text, re2::StringPiece& found,
               CommandError& error) {
    const RE2 pattern(call.Text(0), PatternOptions());
    if (!pattern.ok()) {
        error.message =
            fmt::format("{}: '{}' is not a pattern: {}", call.name, call.Text(0), pattern.error());
        return false;
    }
    if (!pattern.Match(text, 0, text.size(), RE2::UNANCHORED, &found, 1)) found = {};
    return true;
}

Answer Match(CommandCall& call) {
    const std::string text = call.Text(1);
    re2::StringPiece found;
    CommandError error;
    if (!FindMatch(call, text, found, error)) return error;
    return std::string(found.data() ? found.data() : "", found.size());
}

/// Replaces the first part that fits.
Answer Substitute(CommandCall& call) {
    std::string text = call.Text(1);
    re2::StringPiece found;
    CommandError error;
    if (!FindMatch(call, text, found, error)) return error;
    if (found.data())
        text.replace(static_cast<size_t>(found.data() - text.data()), found.size(), call.Text(2));
    return text;
}

/// From the first to the last place, both counted from 1 and both taken.
Answer Substring(CommandCall& call) {
    const std::string text = call.Text(0);
    const auto size = static_cast<int>(text.size());
    const int first = std::clamp(call.arguments[1].AsInt(), 1, size + 1);
    const int last = std::clamp(call.arguments[2].AsInt(), first - 1, size);
    return text.substr(static_cast<size_t>(first - 1), static_cast<size_t>(last - first + 1));
}

Strings Split(const std::string& text, const std::string& separators) {
    Strings parts;
    for (size_t at = text.find_first_not_of(separators); at != text.npos;) {
        const size_t end = std::min(text.find_first_of(separators, at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(separators, end);
    }
    return parts;
}

/// With an array as the last argument it fills that and gives the number of parts, else the parts.
Answer Tokenize(CommandCall& call) {
    const size_t last = call.arguments.size() - 1;
    Variable* const into = last > 0 ? call.places[last] : nullptr;
    const bool fills = into && (!into->IsDeclared() || into->value.IsArray());
    const bool separated = last > (fills ? 1 : 0);
    Strings parts = Split(call.Text(0), separated ? call.Text(1) : " \t\n\r");
    const auto count = static_cast<int>(parts.size());
    if (!fills) return parts;
    if (!into->Assign(std::move(parts)))
        return CommandError{"the parts can't be put into the variable"};
    return count;
}

std::string Cased(std::string text, bool upper) {
    for (char& c : text) {
        if (upper && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        if (!upper && c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

std::string Stripped(const std::string& text) {
    const char* const blanks = " \t\n\r";
    const size_t first = text.find_first_not_of(blanks), last = text.find_last_not_of(blanks);
    return first == text.npos ? "" : text.substr(first, last - first + 1);
}

/// The arrays behind each other; of an array of another type its texts.
Answer Concatenate(CommandCall& call) {
    Strings all = call.arguments[0].AsStrings();
    for (std::string& text : call.arguments[1].AsStrings()) all.push_back(std::move(text));
    return all;
}

template <class T>
Value SortedItems(std::vector<T> items) {
    std::sort(items.begin(), items.end());
    return items;
}

Answer Sort(CommandCall& call) {
    const Value& array = call.arguments[0];
    if (const auto* items = array.Items<int>()) return SortedItems(*items);
    if (const auto* items = array.Items<std::string>()) return SortedItems(*items);
    auto* items = array.Items<double>();
    const bool ordered =
        items && std::none_of(items->begin(), items->end(), [](double x) { return x != x; });
    if (ordered) return SortedItems(*items);
    return CommandError{"sort takes an array of numbers or of strings"};
}

Answer Clear(CommandCall& call) {
    Variable* const variable = call.places[0];
    if (!variable || !variable->value.IsArray())
        return CommandError{"clear takes an array that is a variable"};
    variable->value = Value::Default(variable->type);
    return {};
}

Answer Size(CommandCall& call) {
    const Value& value = call.arguments[0];
    return static_cast<int>(value.IsString() ? value.String().size() : value.Size());
}

void AddArrays(CommandTable& commands) {
    AddCounted(commands, "size", "size(VALUE)", 1, 1, Size);
    AddCounted(commands, "clear", "clear($ARRAY)", 1, 1, Clear, true);
    AddCounted(commands, "sort", "sort(ARRAY)", 1, 1, Sort);
    AddCounted(commands, "stringArrayContains", "stringArrayContains(TEXT, ARRAY)", 2, 2,
               [](CommandCall& call) -> Answer {
                   const Strings items = call.arguments[1].AsStrings();
                   return std::find(items.begin(), items.end(), call.Text(0)) != items.end();
               });
    AddCounted(commands, "stringArrayCat", "stringArrayCat(ARRAY, ARRAY)", 2, 2, Concatenate);
    AddCounted(commands, "stringArrayToString", "stringArrayToString(ARRAY, SEPARATOR)", 2, 2,
               [](CommandCall& call) -> Answer {
                   std::string text;
                   const Strings items = call.arguments[0].AsStrings();
                   for (size_t i = 0; i < items.size(); ++i)
                       text += (i > 0 ? call.Text(1) : "") + items[i];
                   return text;
               });
}

}  // namespace

void AddTextCommands(CommandTable& commands) {
    AddCounted(commands, "match", "match(PATTERN, TEXT)", 2, 2, Match);
    AddCounted(commands, "substitute", "substitute(PATTERN, TEXT, REPLACEMENT)", 3, 3, Substitute);
    AddCounted(commands, "substring", "substring(TEXT, FIRST, LAST)", 3, 3, Substring);
    AddCounted(commands, "tokenize", "tokenize(TEXT [, SEPARATORS] [, $ARRAY])", 1, 3, Tokenize,
               true);
    AddCounted(commands, "toupper", "toupper(TEXT)", 1, 1,
               [](CommandCall& call) -> Answer { return Cased(call.Text(0), true); });
    AddCounted(commands, "tolower", "tolower(TEXT)", 1, 1,
               [](CommandCall& call) -> Answer { return Cased(call.Text(0), false); });
    AddCounted(commands, "strip", "strip(TEXT)", 1, 1,
               [](CommandCall& call) -> Answer { return Stripped(call.Text(0)); });
    AddCounted(commands, "startsWith", "startsWith(TEXT, BEGINNING)", 2, 2,
               [](CommandCall& call) -> Answer { return call.Text(0).starts_with(call.Text(1)); });
    AddCounted(commands, "endsWith", "endsWith(TEXT, END)", 2, 2,
               [](CommandCall& call) -> Answer { return call.Text(0).ends_with(call.Text(1)); });
    AddArrays(commands);
}

}  // namespace minihost
