#include "host/commands/WiringCommands.h"

#include <maya/MArgDatabase.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>

#include "core/sculpt/LNodeRecord.h"
#include "host/ml/Diagnostics.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

namespace {

MSyntax SyntaxForNode() {
    MSyntax syntax;
    syntax.addFlag("km", "kelmo", MSyntax::kString);
    return syntax;
}

/// The node that -kelmo names, or the current one.
MObject GivenNode(const MArgDatabase& words) {
    MObject node, shape;
    MString name;
    if (!words.getFlagArgument("kelmo", 0, name)) {
        FindWorkingKelmoNode(node, shape);
        return node;
    }
    node = FindNodeByName(name);
    return IsKelmo(node) ? node : MObject();
}

}  // namespace

MSyntax KelmoTimeCmd::newSyntax() {
    return SyntaxForNode();
}

MStatus KelmoTimeCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoTimeCmd: can not parse arguments\n");
    const MObject node = GivenNode(parsed);
    if (node.isNull()) return Failed("KelmoTimeCmd: can not find kelmo node.");
    const MObject time = FindNodeByName("time1");
    const MPlug from = time.isNull() ? MPlug() : MFnDependencyNode(time).findPlug("outTime");
    const MPlug to = MFnDependencyNode(node).findPlug("inTime");
    if (from.isNull()) return Failed("KelmoTimeCmd: outTime plug is null\n");
    if (to.source() == from) return MS::kSuccess;
    Log("GONNA CREATE TIME CONNECTION");
    if (!Edits().connect(from, to) || !Edits().doIt())
        return Ended(Failed("KelmoTimeCmd: can not connect time\n"));
    Log("TIME CONNECTED");
    return MS::kSuccess;
}

MSyntax KelmoSetVerCmd::newSyntax() {
    MSyntax syntax = SyntaxForNode();
    syntax.addFlag("all", "allNodes");
    return syntax;
}

MStatus KelmoSetVerCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoSetVerCmd: can not parse arguments\n");
    if (parsed.isFlagSet("allNodes")) {
        for (MItDag walk(MItDag::kDepthFirst, MFn::kMesh); !walk.isDone(); walk.next())
            if (const MObject node = FindInputKelmo(walk.currentItem()); IsKelmoNode2(node))
                Update(node);
        return Edits().doIt();
    }
    const MObject node = GivenNode(parsed);
    if (node.isNull()) return Failed("KelmoSetVerCmd: can not find kelmo node.");
    Update(node);
    return Edits().doIt();
}

void KelmoSetVerCmd::Update(const MObject& node) {
    const MFnDependencyNode known(node);
    Log("GONNA UPDATE VERSION INFO FOR NODE " + known.name());
    Edits().newPlugValueInt(known.findPlug("versionInt"), GetKelmoVersionInt());
    Edits().newPlugValueString(known.findPlug("versionStr"), GetKelmoVersionString().c_str());
}

}  // namespace VantrelSDK
