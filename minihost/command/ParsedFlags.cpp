#include "minihost/command/ParsedFlags.h"

#include <fmt/core.h>

namespace minihost {

namespace {

/// Whether a word is meant as a flag: numbers never come as strings with a sign.
bool LooksLikeFlag(const Value& word) {
    if (!word.IsString() || word.String().size() < 2 || word.String()[0] != '-') return false;
    const char c = word.String()[1];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

std::optional<bool> ToBool(const Value& word) {
    if (word.IsNumber()) return word.AsBool();
    const std::string text = word.AsString();
    for (const std::string_view yes : {"true", "on", "yes", "1"})
        if (text == yes) return true;
    for (const std::string_view no : {"false", "off", "no", "0"})
        if (text == no) return false;
    return std::nullopt;
}

/// The word as an argument of a kind; Nothing when it is not one.
Value ToArgument(const Value& word, Syntax::Argument kind) {
    if (word.IsArray()) return {};
    if (kind == Syntax::Argument::String) return word.AsString();
    if (kind == Syntax::Argument::Boolean) {
        const auto truth = ToBool(word);
        return truth ? Value(*truth) : Value();
    }
    Value number = word.IsString() ? ParseNumber(word.String()) : word;
    if (!number.IsNumber()) return {};
    if (kind == Syntax::Argument::Float) return number.AsFloat();
    if (kind == Syntax::Argument::Unsigned && number.AsFloat() < 0) return {};
    return number.AsInt();
}

}  // namespace

std::optional<ParsedFlags> ParsedFlags::Parse(const Syntax& syntax, std::string_view command,
                                              const std::vector<Value>& words,
                                              CommandError& error) {
    ParsedFlags parsed(syntax);
    const auto is = [&](const Value& word, std::string_view one, std::string_view other) {
        return word.IsString() && (word.String() == one || word.String() == other) &&
               !syntax.Find(word.String());
    };
    // A query reads its flags differently, wherever -query stands.
    for (const Value& word : words) {
        parsed.query_ |= syntax.CanQuery() && is(word, "-q", "-query");
        parsed.edit_ |= syntax.CanEdit() && is(word, "-e", "-edit");
    }
    if (parsed.query_ && parsed.edit_) {
        error.message = fmt::format("{}: -query and -edit exclude each other", command);
        return std::nullopt;
    }
    for (size_t at = 0; at < words.size(); ++at) {
        if ((parsed.query_ && is(words[at], "-q", "-query")) ||
            (parsed.edit_ && is(words[at], "-e", "-edit")))
            continue;
        if (LooksLikeFlag(words[at])) {
            if (!parsed.ReadFlag(command, words, at, error)) return std::nullopt;
        } else if (words[at].IsArray()) {
            for (size_t i = 0; i < words[at].Size(); ++i)
                parsed.objects_.push_back(words[at].Element(i));
        } else {
            parsed.objects_.push_back(words[at]);
        }
    }
    if (!parsed.ReadObjects(command, error)) return std::nullopt;
    return parsed;
}

bool ParsedFlags::ReadFlag(std::string_view command, const std::vector<Value>& words, size_t& at,
                           CommandError& error) {
    const std::string& name = words[at].String();
    const Syntax::Flag* flag = syntax_->Find(name);
    const auto fail = [&](std::string message) {
        error.message = fmt::format("{}: {}", command, message);
        return false;
    };
    if (!flag) return fail(fmt::format("there is no flag {}", name));
    auto& uses = uses_[flag];
    if (!uses.empty() && !flag->multiUse)
        return fail(fmt::format("flag {} may be given once only", name));
    uses.emplace_back();
    if (query_ && !flag->queryTakesArguments) return true;
    const bool optional = query_ && flag->queryArgumentsOptional;
    for (size_t i = 0; i < flag->arguments.size(); ++i) {
        const std::string_view kind = ArgumentName(flag->arguments[i]);
        const bool missing = at + 1 >= words.size() || (LooksLikeFlag(words[at + 1]) &&
                                                        syntax_->Find(words[at + 1].String()));
        if (missing && optional) return true;
        if (missing)
            return fail(fmt::format("flag {} takes {} arguments; number {}, {}, is missing", name,
                                    flag->arguments.size(), i + 1, kind));
        Value argument = ToArgument(words[at + 1], flag->arguments[i]);
        if (argument.IsNone() && optional) return true;
        if (argument.IsNone())
            return fail(fmt::format("argument {} of flag {} is {}, not '{}'", i + 1, name, kind,
                                    words[at + 1].AsString()));
        uses.back().push_back(std::move(argument));
        ++at;
    }
    return true;
}

bool ParsedFlags::ReadObjects(std::string_view command, CommandError& error) const {
    const auto count = static_cast<int>(objects_.size());
    if (count < syntax_->LeastObjects())
        error.message = fmt::format("{}: {} objects are given, at least {} needed", command, count,
                                    syntax_->LeastObjects());
    else if (syntax_->MostObjects() >= 0 && count > syntax_->MostObjects())
        error.message =
            fmt::format("{}: '{}' is one word too many", command,
                        objects_[static_cast<size_t>(syntax_->MostObjects())].AsString());
    else
        return true;
    return false;
}

size_t ParsedFlags::Uses(std::string_view flag) const {
    const auto found = uses_.find(syntax_->Find(flag));
    return found == uses_.end() ? 0 : found->second.size();
}

Value ParsedFlags::Get(std::string_view flag, size_t argument, size_t use) const {
    const auto found = uses_.find(syntax_->Find(flag));
    if (found == uses_.end() || use >= found->second.size()) return {};
    const auto& arguments = found->second[use];
    return argument < arguments.size() ? arguments[argument] : Value();
}

}  // namespace minihost
