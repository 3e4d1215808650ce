#include "minihost/plugin/PluginLogic.h"

#include "maya/MPxLocatorNode.h"
#include "maya/MPxSurfaceShape.h"
#include "minihost/Host.h"

namespace minihost {

PluginLogic::PluginLogic(Node& node, void* (*creator)(), void* (*lookCreator)())
    : ShapeLogic(node), user_(static_cast<MPxNode*>(creator())), lookCreator_(lookCreator) {
    if (const auto& base = node.type().base; base && base->maker) base_ = base->maker(node);
    if (user_) user_->logic_ = this;
}

PluginLogic::~PluginLogic() = default;

MPxSurfaceShapeUI* PluginLogic::Look() {
    auto* shape = dynamic_cast<MPxSurfaceShape*>(user_.get());
    if (!look_ && lookCreator_ && shape) {
        look_.reset(static_cast<MPxSurfaceShapeUI*>(lookCreator_()));
        if (look_) look_->shape_ = shape;
    }
    return look_.get();
}

void PluginLogic::PostConstructor() {
    if (user_) user_->postConstructor();
}

MStatus PluginLogic::Compute(const Plug& plug) {
    MStatus status = MS::kUnknownParameter;
    if (user_) {
        MDataBlock block(node_);
        status = user_->compute(MPlug(plug), block);
    }
    if (status == MS::kUnknownParameter && base_) status = base_->Compute(plug);
    return status;
}

void PluginLogic::SetDependentsDirty(const Plug& plug, std::vector<Plug>& more) {
    MPlugArray affected;
    user_->setDependentsDirty(MPlug(plug), affected);
    for (const MPlug& p : affected) more.push_back(p.plug());
    if (base_ && base_->WatchesDirt()) base_->SetDependentsDirty(plug, more);
}

void PluginLogic::ConnectionMade(const Plug& own, const Plug& other, bool asSource) {
    if (user_) user_->connectionMade(MPlug(own), MPlug(other), asSource);
}

void PluginLogic::ConnectionBroken(const Plug& own, const Plug& other, bool asSource) {
    if (user_) user_->connectionBroken(MPlug(own), MPlug(other), asSource);
}

bool PluginLogic::Allows(const Plug& own, const Plug& other, bool asSource) {
    bool legal = true;
    return !user_ || !user_->legalConnection(MPlug(own), MPlug(other), asSource, legal) || legal;
}

MBoundingBox PluginLogic::Bounds() {
    if (const auto* locator = dynamic_cast<MPxLocatorNode*>(user_.get()))
        return locator->isBounded() ? locator->boundingBox() : MBoundingBox();
    if (const auto* shape = dynamic_cast<MPxSurfaceShape*>(user_.get()))
        return shape->isBounded() ? shape->boundingBox() : MBoundingBox();
    return {};
}

namespace {

NodeType* g_inMaking = nullptr;

}  // namespace

TypeInMaking::TypeInMaking(NodeType& type) : before_(g_inMaking) {
    g_inMaking = &type;
}
TypeInMaking::~TypeInMaking() {
    g_inMaking = before_;
}
NodeType* TypeInMaking::current() {
    return g_inMaking;
}

}  // namespace minihost

using minihost::Attribute;
using minihost::TypeInMaking;

namespace {

MObject BaseAttribute(const char* name) {
    const auto type = minihost::Host::Get().types.Find("dependNode");
    return MObject(type->Find(name)->shared_from_this());
}

}  // namespace

MObject MPxNode::message = BaseAttribute("message");
MObject MPxNode::isHistoricallyInteresting = BaseAttribute("isHistoricallyInteresting");
MObject MPxNode::caching = BaseAttribute("caching");
MObject MPxNode::state = BaseAttribute("nodeState");

MStatus MPxNode::compute(const MPlug&, MDataBlock&) {
    return MS::kUnknownParameter;
}
MStatus MPxNode::setDependentsDirty(const MPlug&, MPlugArray&) {
    return MS::kSuccess;
}
MStatus MPxNode::connectionMade(const MPlug&, const MPlug&, bool) {
    return MS::kUnknownParameter;
}
MStatus MPxNode::connectionBroken(const MPlug&, const MPlug&, bool) {
    return MS::kUnknownParameter;
}
MStatus MPxNode::legalConnection(const MPlug&, const MPlug&, bool, bool&) const {
    return MS::kUnknownParameter;
}

MObject MPxNode::thisMObject() const {
    return logic_ ? MObject(logic_->node().Share()) : MObject();
}
void MPxLocatorNode::draw(M3dView&, const MDagPath&, M3dView::DisplayStyle,
                          M3dView::DisplayStatus) {}

MTypeId MPxNode::typeId() const {
    return logic_ ? logic_->node().type().id : MTypeId();
}
MString MPxNode::typeName() const {
    return logic_ ? logic_->node().type().name : MString();
}
MString MPxNode::name() const {
    return logic_ ? logic_->node().UniqueName() : MString();
}
MDataBlock MPxNode::forceCache() {
    return MDataBlock(logic_->node());
}

MStatus MPxNode::addAttribute(const MObject& attribute) {
    minihost::NodeType* type = TypeInMaking::current();
    if (!type || !attribute.as<Attribute>()) return MS::kInvalidParameter;
    const bool added = type->Add(std::static_pointer_cast<Attribute>(attribute.object()));
    return added ? MS::kSuccess : MS::kFailure;
}

MStatus MPxNode::attributeAffects(const MObject& input, const MObject& output) {
    minihost::NodeType* type = TypeInMaking::current();
    auto *from = input.as<Attribute>(), *to = output.as<Attribute>();
    if (!type || !from || !to || type->Find(from->longName) != from ||
        type->Find(to->longName) != to)
        return MS::kInvalidParameter;
    type->Affects(from, to);
    return MS::kSuccess;
}
