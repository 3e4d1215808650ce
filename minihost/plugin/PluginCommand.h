#pragma once

#include <memory>

#include "maya/MFnPlugin.h"
#include "maya/MPxCommand.h"
#include "minihost/command/CommandTable.h"
#include "minihost/graph/Modifier.h"

namespace minihost {

/// One call of a module's command; what undo holds when the command can be taken back.
class PluginCommand : public Undoable {
  public:
    explicit PluginCommand(std::unique_ptr<MPxCommand> command) : command_(std::move(command)) {}

    /// The function behind a command's name: it makes the module's object, calls it, and hands it
    /// to the undo queue.
    static CommandFunction Function(std::string name, MCreatorFunction creator,
                                    MCreateSyntaxFunction syntax);
    /// What a call of the command `name` may be made of, null where nothing is known.
    static const MSyntax* SyntaxOf(const std::string& name);
    static void Forget(const std::string& name);

    MStatus Undo() override { return command_->undoIt(); }
    MStatus Redo() override { return command_->redoIt(); }

  private:
    std::unique_ptr<MPxCommand> command_;
};

/// Where setResult of the call that is being answered goes. Calls nest.
class ResultFrame {
  public:
    explicit ResultFrame(std::string command);
    ~ResultFrame();
    ResultFrame(const ResultFrame&) = delete;
    ResultFrame& operator=(const ResultFrame&) = delete;

    /// The innermost result; a place that nobody reads outside a call.
    static Value& current();
    /// The command that is being answered, empty outside a call.
    static std::string command();
    Value value;

  private:
    std::string command_;
    ResultFrame* before_;
};

}  // namespace minihost
