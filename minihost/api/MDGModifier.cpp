#include "maya/MDGModifier.h"

#include "maya/MDagModifier.h"
#include "maya/MGlobal.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Modifier.h"

using minihost::DagNode;
using minihost::Host;
using minihost::Modifier;
using minihost::Tell;

namespace {

MStatus Done(bool well) {
    return well ? MS::kSuccess : MS::kFailure;
}

MStatus Set(Modifier& edits, const MPlug& plug, minihost::Datum value) {
    return Done(edits.Set(plug.plug(), std::move(value)));
}

}  // namespace

MDGModifier::MDGModifier() : done_(std::make_shared<Modifier>(Host::Get().scene)) {}
MDGModifier::~MDGModifier() = default;

MObject MDGModifier::createNode(const MTypeId& type, MStatus* status) {
    const auto found = Host::Get().types.Find(type);
    const bool can = found && !found->isAbstract && !found->IsDag();
    return Tell(status, can ? MS::kSuccess : MS::kInvalidParameter) ? MObject(done_->Create(found))
                                                                    : MObject();
}

MObject MDGModifier::createNode(const MString& type, MStatus* status) {
    const auto found = Host::Get().types.Find(type.str());
    return found ? createNode(found->id, status) : Tell(status, MS::kInvalidParameter, MObject());
}

MStatus MDGModifier::deleteNode(const MObject& node) {
    auto* wanted = node.as<minihost::Node>();
    if (!wanted || !wanted->isInScene()) return MS::kInvalidParameter;
    Later([node = wanted->Share()](Modifier& edits) {
        edits.Delete(node);
        return MStatus();
    });
    return MS::kSuccess;
}

MStatus MDGModifier::renameNode(const MObject& node, const MString& name) {
    auto* wanted = node.as<minihost::Node>();
    if (!wanted) return MS::kInvalidParameter;
    Later([node = wanted->Share(), name](Modifier& edits) {
        edits.Rename(node, name.str());
        return MStatus();
    });
    return MS::kSuccess;
}

MStatus MDGModifier::connect(const MPlug& source, const MPlug& destination) {
    if (source.isNull() || destination.isNull()) return MS::kInvalidParameter;
    if (!Host::Get().scene.WhyNot(source.plug(), destination.plug()).empty()) return MS::kFailure;
    Later([source, destination](Modifier& edits) {
        return Done(edits.Connect(source.plug(), destination.plug()));
    });
    return MS::kSuccess;
}

MStatus MDGModifier::connect(const MObject& sourceNode, const MObject& sourceAttribute,
                             const MObject& destinationNode, const MObject& destinationAttribute) {
    return connect(MPlug(sourceNode, sourceAttribute),
                   MPlug(destinationNode, destinationAttribute));
}

MStatus MDGModifier::disconnect(const MPlug& source, const MPlug& destination) {
    if (source.isNull() || destination.isNull()) return MS::kInvalidParameter;
    Later([source, destination](Modifier& edits) {
        const minihost::Slot* slot = destination.plug().Find();
        const bool is = slot && slot->source && slot->source == source.plug().Find();
        return Done(is && edits.Disconnect(destination.plug()));
    });
    return MS::kSuccess;
}

MStatus MDGModifier::disconnect(const MObject& sourceNode, const MObject& sourceAttribute,
                                const MObject& destinationNode,
                                const MObject& destinationAttribute) {
    return disconnect(MPlug(sourceNode, sourceAttribute),
                      MPlug(destinationNode, destinationAttribute));
}

MStatus MDGModifier::commandToExecute(const MString& command) {
    Later([command](Modifier&) { return MGlobal::executeCommand(command, false, true); });
    return MS::kSuccess;
}

MStatus MDGModifier::newPlugValueInt(const MPlug& plug, int value) {
    Later([plug, value](Modifier& edits) { return Set(edits, plug, static_cast<double>(value)); });
    return MS::kSuccess;
}

MStatus MDGModifier::newPlugValueDouble(const MPlug& plug, double value) {
    Later([plug, value](Modifier& edits) { return Set(edits, plug, value); });
    return MS::kSuccess;
}

MStatus MDGModifier::newPlugValueString(const MPlug& plug, const MString& value) {
    Later([plug, value](Modifier& edits) {
        return Set(edits, plug, std::make_shared<minihost::StringData>(value.str()));
    });
    return MS::kSuccess;
}

MStatus MDGModifier::doIt() {
    if (undone_) redoIt();
    const std::vector<Edit> edits = std::move(pending_);
    pending_.clear();
    for (const Edit& edit : edits)
        if (const MStatus status = edit(*done_); !status) return status;
    return MS::kSuccess;
}

MStatus MDGModifier::undoIt() {
    if (undone_) return MS::kFailure;
    undone_ = true;
    return done_->Undo();
}

MStatus MDGModifier::redoIt() {
    if (!undone_) return doIt();
    undone_ = false;
    return done_->Redo();
}

MObject MDagModifier::createNode(const MTypeId& type, const MObject& parent, MStatus* status) {
    const auto found = Host::Get().types.Find(type);
    auto* above = parent.as<DagNode>();
    const bool can = found && !found->isAbstract && found->IsDag() && !(above && above->IsShape());
    if (!Tell(status, can ? MS::kSuccess : MS::kInvalidParameter)) return {};
    if (found->IsShape() && !above) return MObject(done().CreateShape(found)->parent()->ShareDag());
    return MObject(done().Create(found, "", above));
}

MObject MDagModifier::createNode(const MString& type, const MObject& parent, MStatus* status) {
    const auto found = Host::Get().types.Find(type.str());
    return found ? createNode(found->id, parent, status)
                 : Tell(status, MS::kInvalidParameter, MObject());
}

MStatus MDagModifier::reparentNode(const MObject& node, const MObject& parent) {
    auto* wanted = node.as<DagNode>();
    if (!wanted) return MS::kInvalidParameter;
    Later([node = wanted->ShareDag(), parent](Modifier& edits) {
        return Done(edits.Reparent(node, parent.as<DagNode>()));
    });
    return MS::kSuccess;
}
