#pragma once

#include <map>
#include <memory>
#include <string>

#include "maya/MPxContext.h"
#include "minihost/command/CommandTable.h"

class MPxContextCommand;

namespace minihost {

/// The tools that there are, by name, and the one that is on. The host's own are names alone:
/// "selectSuperContext" is on at the start, and whenever a tool goes.
class Tools {
  public:
    /// Turns a tool on, after the one that was on was turned off. False for a name that is none.
    bool SetTo(const std::string& name);
    const std::string& current() const { return current_; }
    bool Exists(const std::string& name) const;
    /// The tool's kind: the command that made it.
    std::string ClassOf(const std::string& name) const;
    MPxContext* Find(const std::string& name) const;
    /// A new tool of a command, by a name of its own (empty: one is made); the name.
    std::string Add(const std::string& command, const std::string& name,
                    std::unique_ptr<MPxContext> context);
    /// Takes down all tools of a command.
    void RemoveOf(const std::string& command);

    static constexpr const char* kSelect = "selectSuperContext";

  private:
    struct Tool {
        std::string command;
        std::unique_ptr<MPxContext> context;
    };

    std::map<std::string, Tool> tools_;
    std::string current_ = kSelect;
    bool switching_ = false;
};

/// The function behind a module's tool command.
class ContextCommand {
  public:
    explicit ContextCommand(std::string name, std::unique_ptr<MPxContextCommand> user);
    ~ContextCommand();

    Answer operator()(CommandCall& call);

  private:
    Answer Make(const std::vector<Value>& words);

    std::string name_;
    std::unique_ptr<MPxContextCommand> user_;
};

}  // namespace minihost
