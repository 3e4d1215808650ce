#include "host/commands/ReplaceByND.h"

#include <maya/MDGModifier.h>
#include <maya/MFnAttribute.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MPlugArray.h>

#include "host/commands/KelmoNewCmd.h"
#include "host/commands/KelmoTweaks.h"
#include "host/commands/NodeProtocol.h"
#include "host/nodes/Finders.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

/// What the two classes call the commands that write a node's state into its plug and read it.
constexpr int kOldPreSave = 25, kRestore = 29;

void CopyValue(const MPlug& from, MPlug& to) {
    MObject data;
    double number = 0;
    if (from.getValue(number))
        to.setValue(number);
    else if (from.getValue(data) && !data.isNull())
        to.setValue(data);
}

/// Values, and connections of both sides, with all parts.
void MovePlug(const MPlug& from, MPlug to, MDGModifier& edits) {
    if (from.isArray()) {
        for (unsigned i = 0; i < from.numElements(); ++i)
            MovePlug(from[i], to.elementByLogicalIndex(from[i].logicalIndex()), edits);
        return;
    }
    MPlugArray fed;
    from.connectedTo(fed, false, true);
    for (const MPlug& destination : fed) {
        edits.disconnect(from, destination);
        edits.doIt();
        edits.connect(to, destination);
    }
    if (const MPlug source = from.source(); !source.isNull()) {
        edits.connect(source, to);
    } else if (from.isCompound()) {
        for (unsigned i = 0; i < from.numChildren(); ++i)
            MovePlug(from.child(i), to.child(i), edits);
    } else {
        CopyValue(from, to);
    }
    edits.doIt();
}

/// Our own settings are the hidden ones; what is not stored is the state of a moment.
void MoveSettings(const MObject& old, const MObject& made, MDGModifier& edits) {
    const MFnDependencyNode from(old), to(made);
    for (unsigned i = 0; i < to.attributeCount(); ++i) {
        const MFnAttribute attribute(to.attribute(i));
        if (!attribute.isHidden() || !attribute.parent().isNull()) continue;
        const MPlug plug = from.findPlug(attribute.name());
        if (plug.isNull() || (!attribute.isStorable() && !plug.isConnected())) continue;
        MovePlug(plug, to.findPlug(attribute.name()), edits);
    }
}

}  // namespace

MObject ReplaceByND(const MObject& old) {
    const MObject shape = FindOutputShape(old);
    const MString name = NameOf(old);
    BringUpToDate(old);
    NodeProtocol(old).Ask(kOldPreSave, 2);
    MDGModifier edits;
    const MObject made = edits.createNode(MTypeId(kKelmoNode2Id));
    if (made.isNull()) {
        MGlobal::displayError("Kelmo: can not replace " + name);
        return made;
    }
    MoveSettings(old, made, edits);
    RunUndoable("delete " + Quoted(name));
    if (!shape.isNull()) InsertBefore(shape, made, edits);
    NodeProtocol(made).Run(kRestore);
    edits.renameNode(made, name);
    edits.doIt();
    return made;
}

}  // namespace VantrelSDK
