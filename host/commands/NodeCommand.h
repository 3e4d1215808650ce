#pragma once

#include <maya/MArgDatabase.h>

#include <array>
#include <span>

#include "host/commands/EditCommand.h"
#include "host/commands/NodeProtocol.h"

namespace VantrelSDK {

struct NodeCall;

/// What a flag of a command does, as data. Arguments go to the parameters by their kind: whole
/// numbers and bools to param0, other numbers to param1, texts to param2.
struct NodeAction {
    enum class Answer : char { kNothing, kIndex, kNumber, kText };
    using Function = MStatus (*)(NodeCall&);

    /// Numbers of the protocol, run one after another; 0s behind the last are none.
    std::array<short, 3> commands{};
    bool some = false, quiet = false, onTop = false;
    int label = 1;
    Answer answer = Answer::kNothing;
    /// A plug of the node that is set to the argument, or answers.
    const char* plug = nullptr;
    /// What is none of that.
    Function function = nullptr;
    /// Interface procedures that are run after.
    std::array<const char*, 2> after{};

    constexpr NodeAction Labelled(int number) const {
        NodeAction action = *this;
        action.label = number;
        return action;
    }
    constexpr NodeAction Answering(Answer what) const {
        NodeAction action = *this;
        action.answer = what;
        return action;
    }
    /// Run by the node at the top of the leads, which hands it on to its followers.
    constexpr NodeAction OnTop() const {
        NodeAction action = *this;
        action.onTop = true;
        return action;
    }
    constexpr NodeAction Then(const char* procedure, const char* another = nullptr) const {
        NodeAction action = *this;
        action.after = {procedure, another};
        return action;
    }
};

/// Runs numbers that may change the outputs, or that leave them alone.
constexpr NodeAction Run(short first, short second = 0, short third = 0) {
    return {.commands = {first, second, third}, .some = true};
}
constexpr NodeAction RunQuietly(short command) {
    return {.commands = {command}, .some = true, .quiet = true};
}
/// Runs a number and answers a parameter.
constexpr NodeAction Ask(short command, NodeAction::Answer answer = NodeAction::Answer::kIndex) {
    return {.commands = {command}, .some = true, .quiet = true, .answer = answer};
}
constexpr NodeAction Plug(const char* name) {
    return {.some = true, .plug = name};
}
constexpr NodeAction Call(NodeAction::Function function) {
    return {.some = true, .function = function};
}

struct NodeFlag {
    const char *brief, *name;
    std::array<MSyntax::MArgType, 2> arguments{};
    NodeAction edit{}, query{};
    /// How many of the arguments a query takes.
    unsigned queryArguments = 0;
    /// Whether it is about a node; else it is done without one.
    bool needsNode = true;

    unsigned NumArguments() const;
};

/// A command as data: what its messages call it, and its flags, which are done in this order.
struct NodeCommandTable {
    const char* className;
    std::span<const NodeFlag> flags;
    /// A flag whose text names the node or mesh to work on; null: it is the current one.
    const char* nodeFlag = nullptr;
};

class NodeCommand;

/// One flag of one call.
struct NodeCall {
    NodeCommand& command;
    const MArgDatabase& words;
    const NodeFlag& flag;
    /// Null where the flag needs none and there is none; the shape that it feeds may be null too.
    MObject node, shape;

    /// An argument of the flag. False, with the error told, where it is not there.
    template <class T>
    bool Argument(unsigned index, T& value) const;
    /// Tells an error behind the command's name.
    MStatus Fail(const char* text) const;
};

/// A command that works on a node: it parses its words, finds the node, and edits it or asks it.
/// Without a node an edit fails, and a query, which interfaces make at any time, warns alone.
class NodeCommand : public EditCommand {
  public:
    explicit NodeCommand(const NodeCommandTable& table) : table_(table) {}

    MStatus doIt(const MArgList& words) override;

    static MSyntax NewSyntax(const NodeCommandTable& table);
    const char* className() const { return table_.className; }

  private:
    MStatus FindNode(const MArgDatabase& words, NodeCall& call);
    MStatus Do(NodeCall& call, const NodeAction& action);
    MStatus SetParameters(const NodeCall& call, NodeProtocol& protocol) const;
    MStatus UsePlug(const NodeCall& call, const NodeAction& action);

    const NodeCommandTable& table_;
};

/// What registration takes for a table.
template <const NodeCommandTable& table>
void* MakeNodeCommand() {
    return new NodeCommand(table);
}
template <const NodeCommandTable& table>
MSyntax MakeNodeSyntax() {
    return NodeCommand::NewSyntax(table);
}

template <class T>
bool NodeCall::Argument(unsigned index, T& value) const {
    if (words.getFlagArgument(flag.name, index, value)) return true;
    Fail("can not get parameter\n");
    return false;
}

}  // namespace VantrelSDK
