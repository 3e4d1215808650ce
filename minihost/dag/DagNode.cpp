#include "minihost/dag/DagNode.h"

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Scene.h"

namespace minihost {

std::string DagNode::Path() const {
    return (parent_ && parent_->parent_ ? parent_->Path() : "") + "|" + name();
}

std::string DagNode::UniqueName() const {
    const std::string path = Path();
    for (size_t at = path.rfind('|'); at != 0 && at != path.npos; at = path.rfind('|', at - 1)) {
        const std::string end = path.substr(at + 1);
        if (scene().Find(end).get() == this) return end;
    }
    return scene().Find(path.substr(1)).get() == this ? path.substr(1) : path;
}

bool DagNode::IsAbove(const DagNode& node) const {
    for (const DagNode* up = &node; up; up = up->parent_)
        if (up == this) return true;
    return false;
}

DagNode* DagNode::Shape() {
    if (IsShape()) return this;
    for (const DagNodePtr& child : children_)
        if (child->IsShape()) return child.get();
    return nullptr;
}

namespace {

MMatrix MatrixAt(Slot* slot) {
    if (!slot) return {};
    const auto data = DataOf<MatrixData>(Pull(*slot));
    return data ? data->value : MMatrix();
}

}  // namespace

MMatrix DagNode::Matrix() {
    return MatrixAt(FindSlot("matrix"));
}

MMatrix DagNode::WorldMatrix() {
    const Plug plug = FindPlug("worldMatrix");
    return MatrixAt(plug.IsNull() ? nullptr : plug.Element(0).Make());
}

MBoundingBox DagNode::Bounds() {
    MBoundingBox box;
    if (auto* shape = LogicAs<ShapeLogic>()) box = shape->Bounds();
    for (const DagNodePtr& child : children_) box.expand(child->Bounds());
    if (!IsShape()) box.transformUsing(Matrix());
    return box;
}

}  // namespace minihost
