#include "maya/MFnDependencyNode.h"

#include "maya/MPlugArray.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Modifier.h"
#include "minihost/plugin/PluginLogic.h"

using minihost::Host;
using minihost::Node;
using minihost::Tell;

MFnDependencyNode::MFnDependencyNode(const MObject& node, MStatus* status) {
    object_ = node.hasFn(MFn::kDependencyNode) ? node : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

Node* MFnDependencyNode::node() const {
    return object_.as<Node>();
}

namespace {

MObject Create(const minihost::NodeTypePtr& type, const MString& name, MStatus* status) {
    if (!Tell(status, type && !type->isAbstract ? MS::kSuccess : MS::kInvalidParameter)) return {};
    const auto node = Host::Get().scene.Make(type, name.str());
    Host::Get().scene.Add(node);
    return MObject(node);
}

}  // namespace

MObject MFnDependencyNode::create(const MTypeId& type, MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type), MString(), status);
}
MObject MFnDependencyNode::create(const MTypeId& type, const MString& name, MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type), name, status);
}
MObject MFnDependencyNode::create(const MString& type, MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type.str()), MString(), status);
}
MObject MFnDependencyNode::create(const MString& type, const MString& name, MStatus* status) {
    return object_ = Create(Host::Get().types.Find(type.str()), name, status);
}

MTypeId MFnDependencyNode::typeId(MStatus* status) const {
    const bool is = Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return is ? node()->type().id : MTypeId();
}

MString MFnDependencyNode::typeName(MStatus* status) const {
    const bool is = Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return is ? MString(node()->type().name) : MString();
}

MString MFnDependencyNode::name(MStatus* status) const {
    const bool is = Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return is ? MString(node()->UniqueName()) : MString();
}

MString MFnDependencyNode::setName(const MString& name, MStatus* status) {
    const bool is = Tell(status, node() && node()->isInScene() ? MS::kSuccess : MS::kFailure);
    return is ? MString(node()->scene().Rename(*node(), name.str())) : MString();
}

MPxNode* MFnDependencyNode::userNode(MStatus* status) const {
    const auto* logic = node() ? node()->LogicAs<minihost::PluginLogic>() : nullptr;
    return Tell(status, node() ? MS::kSuccess : MS::kFailure, logic ? logic->user() : nullptr);
}

unsigned MFnDependencyNode::attributeCount(MStatus* status) const {
    const bool is = Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return is ? static_cast<unsigned>(node()->type().attributes().size()) : 0;
}

MObject MFnDependencyNode::attribute(unsigned index, MStatus* status) const {
    const bool is = node() && index < node()->type().attributes().size();
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)
               ? MObject(node()->type().attributes()[index])
               : MObject();
}

MObject MFnDependencyNode::attribute(const MString& name, MStatus* status) const {
    auto* found = node() ? node()->type().Find(name.str()) : nullptr;
    return Tell(status, found ? MS::kSuccess : MS::kInvalidParameter)
               ? MObject(found->shared_from_this())
               : MObject();
}

bool MFnDependencyNode::hasAttribute(const MString& name, MStatus* status) const {
    return Tell(status, node() ? MS::kSuccess : MS::kFailure) && node()->type().Find(name.str());
}

MPlug MFnDependencyNode::findPlug(const MString& name, MStatus* status) const {
    const auto plug = node() ? node()->FindPlug(name.str()) : minihost::Plug();
    return Tell(status, plug.IsNull() ? MS::kInvalidParameter : MS::kSuccess, MPlug(plug));
}

MPlug MFnDependencyNode::findPlug(const MString& name, bool, MStatus* status) const {
    return findPlug(name, status);
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, MStatus* status) const {
    const auto* wanted = attribute.as<minihost::Attribute>();
    const bool is = node() && wanted && node()->type().Find(wanted->longName) == wanted;
    return Tell(status, is ? MS::kSuccess : MS::kInvalidParameter) ? MPlug(object_, attribute)
                                                                   : MPlug();
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, bool, MStatus* status) const {
    return findPlug(attribute, status);
}

MStatus MFnDependencyNode::getConnections(MPlugArray& plugs) const {
    plugs.clear();
    if (!node()) return MS::kFailure;
    const auto collect = [&plugs](auto&& self, const minihost::Slot& slot) -> void {
        if (slot.source || !slot.destinations.empty()) plugs.append(MPlug(minihost::Plug(slot)));
        for (const auto& part : slot.parts) self(self, *part);
    };
    for (const minihost::Slot& root : node()->roots()) collect(collect, root);
    return MS::kSuccess;
}

MStatus MFnDependencyNode::setDoNotWrite(bool on) {
    if (!node()) return MS::kFailure;
    node()->isTransient = on;
    return MS::kSuccess;
}

bool MFnDependencyNode::canBeWritten(MStatus* status) const {
    Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return node() && !node()->isTransient;
}

// There are no references: what is opened or imported becomes part of the scene.
bool MFnDependencyNode::isFromReferencedFile(MStatus* status) const {
    Tell(status, node() ? MS::kSuccess : MS::kFailure);
    return false;
}
