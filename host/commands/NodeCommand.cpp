#include "host/commands/NodeCommand.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>

#include "host/nodes/Finders.h"

namespace VantrelSDK {

namespace {

bool IsWhole(MSyntax::MArgType type) {
    return type == MSyntax::kLong || type == MSyntax::kUnsigned || type == MSyntax::kBoolean;
}

/// The answer of a plug, by the kind of its flag's argument.
void Tell(const MPlug& plug, MSyntax::MArgType type) {
    if (IsWhole(type) || type == MSyntax::kNoArg || type == MSyntax::kInvalidArgType)
        MPxCommand::setResult(plug.asInt());
    else if (type == MSyntax::kString)
        MPxCommand::setResult(plug.asString());
    else
        MPxCommand::setResult(plug.asDouble());
}

void Tell(const NodeProtocol& protocol, NodeAction::Answer answer) {
    if (answer == NodeAction::Answer::kIndex) MPxCommand::setResult(protocol.index());
    if (answer == NodeAction::Answer::kNumber) MPxCommand::setResult(protocol.number());
    if (answer == NodeAction::Answer::kText) MPxCommand::setResult(protocol.text());
}

}  // namespace

unsigned NodeFlag::NumArguments() const {
    unsigned count = 0;
    while (count < arguments.size() && arguments[count] != MSyntax::kInvalidArgType) ++count;
    return count;
}

MStatus NodeCall::Fail(const char* text) const {
    return Failed(MString(command.className()) + ": " + text);
}

MSyntax NodeCommand::NewSyntax(const NodeCommandTable& table) {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.addFlag("nn", "nodename");
    for (const NodeFlag& flag : table.flags) {
        syntax.addFlag(flag.brief, flag.name, flag.arguments[0], flag.arguments[1]);
        if (flag.queryArguments > 0) syntax.makeFlagQueryWithFullArgs(flag.name, true);
    }
    return syntax;
}

MStatus NodeCommand::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    const MString name(table_.className);
    if (!status) return Failed(name + ": can not parse arguments\n");
    static constexpr NodeFlag kNodeName{.brief = "nn", .name = "nodename"};
    NodeCall call{*this, parsed, kNodeName, {}, {}};
    const bool query = parsed.isQuery();
    bool needsNode = parsed.isFlagSet("nodename");
    for (const NodeFlag& flag : table_.flags)
        if (parsed.isFlagSet(flag.name)) needsNode = needsNode || flag.needsNode;
    if (needsNode && !FindNode(parsed, call)) {
        MGlobal::displayWarning(name + ": select Kelmo to display AE correctly.");
        return query ? MS::kSuccess : MS::kFailure;
    }
    if (parsed.isFlagSet("nodename")) setResult(NameOf(call.node));
    for (const NodeFlag& flag : table_.flags) {
        const NodeAction& action = query ? flag.query : flag.edit;
        if (!parsed.isFlagSet(flag.name) || !action.some) continue;
        NodeCall one{*this, parsed, flag, call.node, call.shape};
        if (const MStatus done = Do(one, action); !done) return Ended(done);
    }
    return MS::kSuccess;
}

MStatus NodeCommand::FindNode(const MArgDatabase& words, NodeCall& call) {
    if (!table_.nodeFlag || !words.isFlagSet(table_.nodeFlag))
        return FindWorkingKelmoNode(call.node, call.shape) ? MS::kSuccess : MS::kNotFound;
    MString name;
    words.getFlagArgument(table_.nodeFlag, 0, name);
    const MObject named = FindNodeByName(name);
    call.node = IsKelmoNode2(named) ? named : FindInputKelmo(ShapeOf(named));
    if (!IsKelmoNode2(call.node)) return MS::kNotFound;
    call.shape = FindOutputShape(call.node);
    return MS::kSuccess;
}

MStatus NodeCommand::Do(NodeCall& call, const NodeAction& action) {
    if (action.function) return action.function(call);
    if (action.plug) return UsePlug(call, action);
    MObject node = call.node;
    if (action.onTop) FindTopParentConnected(call.node, node);
    NodeProtocol protocol(node);
    if (const char* missing = protocol.missing())
        return call.Fail((MString("can not find ") + missing + " plug\n").asChar());
    if (const MStatus status = SetParameters(call, protocol); !status) return status;
    BringUpToDate(node);
    for (size_t i = 0; i < action.commands.size() && (i == 0 || action.commands[i]); ++i)
        action.quiet ? protocol.Ask(action.commands[i], action.label)
                     : protocol.Run(action.commands[i], action.label);
    Tell(protocol, action.answer);
    for (const char* procedure : action.after)
        if (procedure) MGlobal::executeCommand(procedure);
    return MS::kSuccess;
}

MStatus NodeCommand::SetParameters(const NodeCall& call, NodeProtocol& protocol) const {
    const unsigned count =
        call.words.isQuery() ? call.flag.queryArguments : call.flag.NumArguments();
    for (unsigned i = 0; i < count; ++i) {
        const MSyntax::MArgType type = call.flag.arguments[i];
        int whole = 0;
        double number = 0;
        MString text;
        if (IsWhole(type)) {
            if (!call.Argument(i, whole)) return MS::kFailure;
            protocol.SetIndex(whole);
        } else if (type == MSyntax::kString) {
            if (!call.Argument(i, text)) return MS::kFailure;
            protocol.SetText(text);
        } else {
            if (!call.Argument(i, number)) return MS::kFailure;
            protocol.SetNumber(number);
        }
    }
    return MS::kSuccess;
}

MStatus NodeCommand::UsePlug(const NodeCall& call, const NodeAction& action) {
    const MPlug plug = MFnDependencyNode(call.node).findPlug(action.plug);
    if (plug.isNull())
        return call.Fail((MString("can not find '") + action.plug + "' plug.").asChar());
    const MSyntax::MArgType type = call.flag.arguments[0];
    if (call.words.isQuery()) {
        Tell(plug, type);
        return MS::kSuccess;
    }
    double number = 0;
    MString text;
    if (type == MSyntax::kString ? !call.Argument(0, text) : !call.Argument(0, number))
        return MS::kFailure;
    if (type == MSyntax::kString)
        Edits().newPlugValueString(plug, text);
    else
        Edits().newPlugValueDouble(plug, number);
    return Edits().doIt();
}

}  // namespace VantrelSDK
