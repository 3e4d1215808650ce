#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "minihost/command/CommandTable.h"
#include "minihost/command/Syntax.h"

namespace minihost {

/// The words of a call, sorted by a syntax. Flags are asked for by either name, with or without
/// their '-'.
class ParsedFlags {
  public:
    /// Reads the words of a call. The syntax must outlive the result. None on failure, with
    /// `error` set: an unknown flag, an argument that is missing or of a wrong kind, a flag given
    /// twice that may be given once, too few or many objects. Texts name command and flag.
    static std::optional<ParsedFlags> Parse(const Syntax& syntax, std::string_view command,
                                            const std::vector<Value>& words, CommandError& error);

    bool IsQuery() const { return query_; }
    bool IsEdit() const { return edit_; }
    bool IsSet(std::string_view flag) const { return Uses(flag) > 0; }
    /// How many flags were given, each counted once.
    size_t Count() const { return uses_.size(); }
    /// How many times a flag was given.
    size_t Uses(std::string_view flag) const;
    /// An argument of a flag, of its kind: a Boolean is an int 0 or 1. Nothing when it was not
    /// given.
    Value Get(std::string_view flag, size_t argument = 0, size_t use = 0) const;
    /// The words that belong to no flag; arrays stand as their elements.
    const std::vector<Value>& Objects() const { return objects_; }

  private:
    explicit ParsedFlags(const Syntax& syntax) : syntax_(&syntax) {}

    bool ReadFlag(std::string_view command, const std::vector<Value>& words, size_t& at,
                  CommandError& error);
    bool ReadObjects(std::string_view command, CommandError& error) const;

    const Syntax* syntax_;
    bool query_ = false, edit_ = false;
    std::map<const Syntax::Flag*, std::vector<std::vector<Value>>> uses_;
    std::vector<Value> objects_;
};

}  // namespace minihost
