#include "host/commands/KelmoJournalCmd.h"

#include <maya/MArgDatabase.h>

#include "host/commands/EditCommand.h"
#include "host/commands/NodeProtocol.h"
#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/NodeJournal.h"

namespace VantrelSDK {

namespace {

MStatus Start(MLNode& node, const std::string& path) {
    std::string error;
    node.journal.reset();
    node.journal = NodeJournal::Start(node, path, error);
    return node.journal ? MStatus(MS::kSuccess) : Failed(MString("KelmoJournalCmd: " + error));
}

MStatus Stop(MLNode& node) {
    std::string error;
    const bool good = !node.journal || node.journal->Stop(error);
    node.journal.reset();
    return good ? MStatus(MS::kSuccess) : Failed(MString("KelmoJournalCmd: " + error));
}

MStatus Play(MLNode& node, const std::string& path) {
    BringUpToDate(node.getThisMObject());
    std::string error;
    const int strokes = PlayJournal(node, path, error);
    NodeProtocol(node.getThisMObject()).Run(134);
    if (strokes < 0) return Failed(MString("KelmoJournalCmd: " + error));
    MPxCommand::setResult(strokes);
    return MS::kSuccess;
}

MStatus Tell(const MArgDatabase& words, MLNode& node) {
    NodeJournal* journal = node.journal.get();
    if (words.isFlagSet("path"))
        MPxCommand::setResult(MString(journal ? journal->journal().path() : ""));
    else if (words.isFlagSet("strokes"))
        MPxCommand::setResult(journal ? journal->recorder().NumStrokes() : 0);
    else if (words.isFlagSet("broken"))
        MPxCommand::setResult(journal && journal->recorder().IsBroken());
    else
        MPxCommand::setResult(MString(journal ? journal->journal().Problem() : ""));
    return MS::kSuccess;
}

}  // namespace

MSyntax KelmoJournalCmd::newSyntax() {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.addFlag("st", "start", MSyntax::kString);
    syntax.addFlag("sp", "stop");
    syntax.addFlag("w", "wait");
    syntax.addFlag("pl", "play", MSyntax::kString);
    syntax.addFlag("pa", "path");
    syntax.addFlag("str", "strokes");
    syntax.addFlag("br", "broken");
    syntax.addFlag("pr", "problem");
    syntax.setObjectType(MSyntax::kStringObjects, 1, 1);
    return syntax;
}

MStatus KelmoJournalCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoJournalCmd: can not parse arguments\n");
    MStringArray names;
    parsed.getObjects(names);
    MLNode* node = names.length() == 1 ? MLNode::FromObject(FindNodeByName(names[0])) : nullptr;
    if (!node) return Failed("KelmoJournalCmd: can not find kelmo node.");
    if (parsed.isQuery()) return Tell(parsed, *node);
    MString path;
    if (parsed.isFlagSet("start") && parsed.getFlagArgument("start", 0, path))
        return Start(*node, path.str());
    if (parsed.isFlagSet("play") && parsed.getFlagArgument("play", 0, path))
        return Play(*node, path.str());
    if (parsed.isFlagSet("wait") && node->journal) node->journal->journal().Join();
    return parsed.isFlagSet("stop") ? Stop(*node) : MStatus(MS::kSuccess);
}

}  // namespace VantrelSDK
