#include "host/commands/ObjectCommands.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/TrackCurves.h"

namespace VantrelSDK {

namespace {

using Answer = NodeAction::Answer;

constexpr auto kUnsigned = MSyntax::kUnsigned;
constexpr auto kLong = MSyntax::kLong;
constexpr auto kBoolean = MSyntax::kBoolean;
constexpr auto kString = MSyntax::kString;
constexpr auto kDouble = MSyntax::kDouble;

/// The name of a target, or the one that it has by its number.
MStatus AskTargetName(NodeCall& call) {
    int index = 0;
    if (!call.Argument(0, index)) return MS::kFailure;
    NodeProtocol protocol(call.node);
    protocol.SetIndex(index);
    BringUpToDate(call.node);
    protocol.Ask(7);
    const MString name = protocol.text();
    const bool named = name.length() > 0 || index < 0;
    MPxCommand::setResult(named ? name : MLNode::GetDefMorphName(static_cast<unsigned>(index)));
    return MS::kSuccess;
}

/// The neutral becomes the delta, and unless that is not wanted the joints take its places.
MStatus NeutralToDelta(NodeCall& call) {
    NodeProtocol protocol(call.node);
    protocol.SetIndex(call.words.isFlagSet("nojoints"));
    BringUpToDate(call.node);
    protocol.Run(184);
    return MS::kSuccess;
}

constexpr NodeFlag kTargetFlags[] = {
    {.brief = "l", .name = "load", .arguments = {kUnsigned}, .edit = Run(9)},
    {.brief = "d", .name = "delta", .arguments = {kUnsigned}, .edit = Run(10)},
    {.brief = "k", .name = "keyframe", .arguments = {kUnsigned, kDouble}, .edit = Run(11)},
    {.brief = "n",
     .name = "name",
     .arguments = {kUnsigned, kString},
     .edit = RunQuietly(8),
     .query = Call(AskTargetName),
     .queryArguments = 1},
    {.brief = "tn", .name = "totalnum", .query = Ask(19)},
    {.brief = "sn", .name = "stdnum", .query = Ask(20)},
    {.brief = "en", .name = "extnum", .query = Ask(21)},
    {.brief = "nt", .name = "newtarg", .edit = RunQuietly(22).OnTop().Then("UpdateCurrentAE")},
    {.brief = "dt",
     .name = "deltarg",
     .arguments = {kUnsigned},
     .edit = Run(23).Then("UpdateCurrentAE", "release_kelmoDeleteTargetBox")},
    {.brief = "ln", .name = "loadNEUTRAL", .edit = Run(132, 134, 182)},
    {.brief = "z",
     .name = "iszero",
     .arguments = {kUnsigned},
     .query = Ask(24),
     .queryArguments = 1},
    {.brief = "cl", .name = "clear", .arguments = {kLong}, .edit = Run(157)},
    {.brief = "jo",
     .name = "jointsOn",
     .arguments = {kUnsigned},
     .edit = RunQuietly(26),
     .query = Ask(25)},
    {.brief = "je", .name = "jointsEn", .arguments = {kUnsigned}, .query = Ask(27)},
};

constexpr NodeFlag kNeutralFlags[] = {
    {.brief = "l", .name = "load", .arguments = {kUnsigned}, .edit = Run(132, 134, 182)},
    {.brief = "d", .name = "delta", .edit = Call(NeutralToDelta)},
    {.brief = "nj", .name = "nojoints"},
    {.brief = "k",
     .name = "keyframe",
     .arguments = {kDouble},
     .edit = Run(186).Then("KelmoMixKeysUpdate")},
    {.brief = "cl", .name = "clear", .arguments = {kUnsigned}, .edit = Run(188)},
    {.brief = "ex", .name = "export", .edit = Run(193)},
    {.brief = "z", .name = "iszero", .query = Ask(194)},
};

/// The track of the first argument, on a node that has seen its mesh; -2 is that of param0.
bool TakeTrack(NodeCall& call, NodeProtocol& protocol, int& track) {
    if (!call.Argument(0, track)) return false;
    BringUpToDate(call.node);
    if (track == -2) track = protocol.index();
    protocol.SetIndex(track);
    return true;
}

/// Its curve, with its keys while they are shown.
MStatus ReconnectTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0;
    if (!TakeTrack(call, protocol, track)) return MS::kFailure;
    MLNode* node = MLNode::FromObject(call.node);
    if (!node || TrackCurve(*node, track).isNull())
        return call.Fail("can not create animation curve.");
    protocol.Ask(209);
    return MS::kSuccess;
}

MStatus DeleteTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0;
    if (!TakeTrack(call, protocol, track)) return MS::kFailure;
    if (track < 0) return call.Fail("you can not delete master track\n");
    protocol.Run(40);
    protocol.Ask(208);
    protocol.Ask(209);
    return MS::kSuccess;
}

MStatus ActivateTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0;
    if (!TakeTrack(call, protocol, track)) return MS::kFailure;
    protocol.Ask(41);
    MGlobal::executeCommand("KelmoMixKeysUpdate");
    return MS::kSuccess;
}

MStatus AskActiveTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    BringUpToDate(call.node);
    protocol.SetIndex(-2);
    protocol.Ask(42);
    MPxCommand::setResult(protocol.index());
    return MS::kSuccess;
}

MStatus EnableTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0, on = 0;
    if (!TakeTrack(call, protocol, track) || !call.Argument(1, on)) return MS::kFailure;
    protocol.SetNumber(on != 0 ? 1 : 0);
    protocol.Run(43);
    protocol.Run(243);
    return MGlobal::executeCommand("refresh");
}

MStatus AskTrackOn(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0;
    if (!TakeTrack(call, protocol, track)) return MS::kFailure;
    protocol.SetNumber(0);
    protocol.Ask(44);
    MPxCommand::setResult(protocol.number() != 0);
    return MS::kSuccess;
}

MStatus RenameTrack(NodeCall& call) {
    NodeProtocol protocol(call.node);
    int track = 0;
    MString name;
    if (!TakeTrack(call, protocol, track) || !call.Argument(1, name)) return MS::kFailure;
    if (track == -1) return call.Fail("you can not change name of master track\n");
    protocol.SetText(name);
    protocol.Ask(38);
    return MS::kSuccess;
}

/// A timeline shows the keys of what is selected.
MStatus ShowInTimeline(NodeCall& call) {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    if (selected.hasItem(call.node)) return MS::kSuccess;
    return MGlobal::executeCommand("select -addFirst " + NameOf(call.node));
}

constexpr NodeFlag kTracksFlags[] = {
    {.brief = "nt",
     .name = "newtrack",
     .arguments = {kUnsigned},
     .edit = {.commands = {39, 208, 209}, .some = true, .quiet = true, .onTop = true}},
    {.brief = "rc", .name = "reconnect", .arguments = {kLong}, .edit = Call(ReconnectTrack)},
    {.brief = "dt", .name = "deltrack", .arguments = {kLong}, .edit = Call(DeleteTrack)},
    {.brief = "ac",
     .name = "activate",
     .arguments = {kLong},
     .edit = Call(ActivateTrack),
     .query = Call(AskActiveTrack)},
    {.brief = "en",
     .name = "enable",
     .arguments = {kLong, kBoolean},
     .edit = Call(EnableTrack),
     .query = Call(AskTrackOn),
     .queryArguments = 1},
    {.brief = "nm",
     .name = "name",
     .arguments = {kLong, kString},
     .edit = Call(RenameTrack),
     .query = Ask(36, Answer::kText),
     .queryArguments = 1},
    {.brief = "tl", .name = "total", .query = Ask(35)},
    {.brief = "ti", .name = "timeline", .edit = Call(ShowInTimeline)},
    {.brief = "tp",
     .name = "type",
     .arguments = {kUnsigned},
     .query = Ask(37),
     .queryArguments = 1},
};

/// Sets what the flag asks about, and has the active mask drawn anew.
MStatus EditMask(NodeCall& call) {
    double value = 0;
    if (!call.Argument(0, value)) return MS::kFailure;
    const MPlug plug = MFnDependencyNode(call.node).findPlug(call.flag.query.plug);
    call.command.Edits().newPlugValueDouble(plug, value);
    if (const MStatus done = call.command.Edits().doIt(); !done) return done;
    NodeProtocol(call.node).Ask(213);
    return MS::kSuccess;
}

constexpr NodeFlag kMasksFlags[] = {
    {.brief = "u",
     .name = "douse",
     .arguments = {kUnsigned},
     .edit = Call(EditMask),
     .query = Plug("dynMasksOn")},
    {.brief = "t", .name = "total", .query = Ask(211)},
    {.brief = "a", .name = "active", .query = Plug("dynMaskActive")},
    {.brief = "ac",
     .name = "activate",
     .arguments = {kUnsigned},
     .edit = Call(EditMask),
     .query = Plug("dynMaskActive")},
    {.brief = "n",
     .name = "name",
     .arguments = {kUnsigned},
     .query = Ask(212, Answer::kText),
     .queryArguments = 1},
    {.brief = "c",
     .name = "ceiling",
     .arguments = {kDouble},
     .edit = Call(EditMask),
     .query = Plug("dynMaksCeiling")},
    {.brief = "g",
     .name = "gamma",
     .arguments = {kDouble},
     .edit = Call(EditMask),
     .query = Plug("dynMaksGamma")},
    {.brief = "al",
     .name = "altitude",
     .arguments = {kLong},
     .edit = Call(EditMask),
     .query = Plug("dynMaskAlt")},
    {.brief = "az",
     .name = "azimuth",
     .arguments = {kLong},
     .edit = Call(EditMask),
     .query = Plug("dynMaskAzm")},
};

constexpr NodeFlag kSubdivsFlags[] = {
    {.brief = "tl", .name = "total", .query = Ask(90)},
    {.brief = "ac", .name = "active", .arguments = {kUnsigned}, .edit = Run(92), .query = Ask(91)},
    {.brief = "tp", .name = "type", .arguments = {kLong}, .query = Ask(93), .queryArguments = 1},
    {.brief = "nv",
     .name = "nverts",
     .arguments = {kUnsigned},
     .query = Ask(94),
     .queryArguments = 1},
    {.brief = "nf",
     .name = "nfaces",
     .arguments = {kUnsigned},
     .query = Ask(95),
     .queryArguments = 1},
    {.brief = "nm",
     .name = "name",
     .arguments = {kUnsigned},
     .query = Ask(96, Answer::kText),
     .queryArguments = 1},
    {.brief = "n", .name = "newsubdiv", .edit = Run(97).OnTop().Answering(Answer::kIndex)},
    {.brief = "d", .name = "delsubdiv", .edit = Run(98).OnTop().Answering(Answer::kIndex)},
    {.brief = "ol",
     .name = "outputLevel",
     .arguments = {kUnsigned},
     .edit = Plug("numRenderSubdivLvls"),
     .query = Plug("numRenderSubdivLvls")},
    {.brief = "frt",
     .name = "forceRenderTop",
     .arguments = {kBoolean},
     .edit = Plug("forceRenderTopLevel"),
     .query = Plug("forceRenderTopLevel")},
    {.brief = "sg",
     .name = "smoothGeom",
     .arguments = {kBoolean},
     .edit = Plug("doSmoothGeomSubdivs"),
     .query = Plug("doSmoothGeomSubdivs")},
    {.brief = "sc",
     .name = "smoothColor",
     .arguments = {kBoolean},
     .edit = Plug("doSmoothColorSubdivs"),
     .query = Plug("doSmoothColorSubdivs")},
    {.brief = "su",
     .name = "smoothUVs",
     .arguments = {kBoolean},
     .edit = Plug("doSmoothUVSubdivs"),
     .query = Plug("doSmoothUVSubdivs")},
};

}  // namespace

const NodeCommandTable kKelmoTargetCmd{"KelmoTargetCmd", kTargetFlags};
const NodeCommandTable kKelmoNeutralCmd{"KelmoNeutralCmd", kNeutralFlags};
const NodeCommandTable kKelmoTracksCmd{"KelmoTracksCmd", kTracksFlags};
const NodeCommandTable kKelmoMasksCmd{"KelmoMasksCmd", kMasksFlags};
const NodeCommandTable kKelmoSubdivsCmd{"KelmoSubdivsCmd", kSubdivsFlags};

}  // namespace VantrelSDK
