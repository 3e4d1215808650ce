#pragma once

#include <string_view>

namespace minihost {

/// Where scripts and commands write to. As it is: prints go to standard output as they are,
/// messages to standard error, each on a line, warnings behind "Warning: " and errors behind
/// "Error: ".
class ScriptOutput {
  public:
    virtual ~ScriptOutput() = default;
    virtual void Print(std::string_view text);
    virtual void Info(std::string_view text);
    virtual void Warning(std::string_view text);
    /// A message alone: the script goes on.
    virtual void Error(std::string_view text);
};

}  // namespace minihost
