#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "minihost/command/Value.h"

namespace minihost {

class Interpreter;
struct Variable;

/// Why a command failed: what, where, and what to do, without the place in the script.
struct CommandError {
    std::string message;
};

/// What a command answers: a value (Nothing when it has nothing to say) or an error.
class Answer {
  public:
    Answer() = default;
    template <class T>
    requires std::constructible_from<Value, T> Answer(T&& value) : value_(std::forward<T>(value)) {}
    Answer(CommandError error) : error_(std::move(error)) {}

    bool Good() const { return !error_; }
    const Value& GetValue() const { return value_; }
    Value Take() { return std::move(value_); }
    /// Empty when it went well.
    std::string Message() const { return error_ ? error_->message : std::string(); }

  private:
    Value value_;
    std::optional<CommandError> error_;
};

/// One call of a command.
struct CommandCall {
    Interpreter& interpreter;
    /// The name that it was called by.
    std::string_view name;
    /// The words behind the name, flags among them as strings ("-edit"), or the arguments in
    /// brackets. The function may take them.
    std::vector<Value>& arguments;
    /// As long as the arguments when the command's entry has `byReference`, else empty: the
    /// variable that an argument is, null where it is none.
    std::vector<Variable*>& places;

    /// The argument as text, empty when it is not there.
    std::string Text(size_t index) const {
        return index < arguments.size() ? arguments[index].AsString() : std::string();
    }
};

using CommandFunction = std::function<Answer(CommandCall&)>;

/// What scripts can call that is not written in the language.
struct CommandEntry {
    enum class Kind {
        Command,
        /// An interface procedure: the program fills it in, scripts take it for one of their own.
        Procedure
    };

    std::string name;
    CommandFunction function;
    Kind kind = Kind::Command;
    /// How it is called, for `help`: "size VALUE".
    std::string usage;
    bool byReference = false;
};

/// The commands and interface procedures by name. Not for use by several threads.
class CommandTable {
  public:
    /// False, and the old entry stays, when the name is taken.
    bool Add(CommandEntry entry);
    bool Add(std::string name, std::string usage, CommandFunction function) {
        return Add(
            {std::move(name), std::move(function), CommandEntry::Kind::Command, std::move(usage)});
    }
    /// Adds an interface procedure, or replaces one; false when the name is a command's.
    bool SetProcedure(std::string name, CommandFunction function);
    /// False when there is no such entry.
    bool Remove(std::string_view name);

    /// Null when there is none. What a running call needs stays alive though the entry is removed.
    std::shared_ptr<const CommandEntry> Find(std::string_view name) const;
    /// All names, sorted.
    std::vector<std::string> Names() const;
    /// Counts up with every change.
    uint64_t Version() const { return version_; }

  private:
    std::map<std::string, std::shared_ptr<const CommandEntry>, std::less<>> entries_;
    uint64_t version_ = 0;
};

}  // namespace minihost
