#pragma once

#include <maya/MArgParser.h>

#include <span>

#include "host/tools/KelmoToolContext.h"

namespace VantrelSDK {

struct ToolFlag;

/// One flag of a call of the tool's command.
struct ToolCall {
    KelmoToolContext& tool;
    const MArgParser& words;
    const ToolFlag& flag;

    /// The flag's argument; 0 or empty where there is none.
    double Number() const;
    MString Text() const;
    /// A plug of the node; null, with the reason told, where there is none.
    MPlug Plug(NodeAttributes::Member attribute) const;
    MStatus Fail(const MString& why) const;
};

/// What a flag of the tool's command does, as data: a plug of the node that is set or answers, or
/// a numbered command of it, or a function. One that does none of that is of what this version
/// lacks.
struct ToolFlag {
    using Function = MStatus (*)(ToolCall&);
    using Member = NodeAttributes::Member;
    static constexpr short kNone = -1;

    const char *brief, *name;
    MSyntax::MArgType type = MSyntax::kNoArg;
    Member plug = nullptr;
    /// Of a pair or triple.
    short child = kNone;
    /// What an edit runs, and what a query asks; an argument goes to `param0`, and to `param2` as
    /// text.
    short runs = kNone, asks = kNone;
    bool answersText = false;
    Function edit = nullptr, query = nullptr;
    /// Whether a query takes the argument.
    bool asksWith = false;

    bool IsBuilt() const { return plug || runs != kNone || asks != kNone || edit || query; }
};

/// All of them, in the order in which the flags of one call are done.
std::span<const ToolFlag> ToolFlags();

MStatus EditByFlag(ToolCall& call);
MStatus AnswerFlag(ToolCall& call);

}  // namespace VantrelSDK
