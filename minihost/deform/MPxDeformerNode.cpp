#include "maya/MPxDeformerNode.h"

#include "minihost/Host.h"
#include "minihost/deform/GeometryFilter.h"

using minihost::DagNode;
using minihost::MeshData;
using minihost::MeshPtr;

namespace {

MObject FilterAttribute(const char* name) {
    const auto type = minihost::Host::Get().types.Find("geometryFilter");
    return MObject(type->Find(name)->shared_from_this());
}

MFloatVector Single(const MPoint& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

/// The place of the mesh that a geometry ends in.
MMatrix WorldOf(const minihost::Slot& output) {
    const minihost::Slot* slot = &output;
    for (int step = 0; step < minihost::kMaxChain && !slot->destinations.empty(); ++step) {
        const minihost::Slot& fed = *slot->destinations.front();
        if (auto* dag = dynamic_cast<DagNode*>(fed.node)) return dag->WorldMatrix();
        const minihost::Plug out = fed.node->FindPlug("outputGeometry");
        if (out.IsNull()) break;
        const bool isArray = out.IsArray();
        slot = isArray ? out.Element(fed.parent ? std::max(fed.parent->index, 0) : 0).Find()
                       : out.Find();
        if (!slot) break;
    }
    return {};
}

}  // namespace

MObject MPxDeformerNode::input = FilterAttribute("input");
MObject MPxDeformerNode::inputGeom = FilterAttribute("inputGeometry");
MObject MPxDeformerNode::groupId = FilterAttribute("groupId");
MObject MPxDeformerNode::outputGeom = FilterAttribute("outputGeometry");
MObject MPxDeformerNode::envelope = FilterAttribute("envelope");

MStatus MPxDeformerNode::compute(const MPlug& plug, MDataBlock& data) {
    if (plug.attribute() != outputGeom) return MS::kUnknownParameter;
    minihost::Node& node = data.node();
    const minihost::DeformInput in = minihost::ReadDeformInput(node, plug.plug().LogicalIndex());
    minihost::Slot* output = plug.plug().Make();
    if (!output) return MS::kInvalidParameter;
    MeshPtr out = in.mesh;
    MStatus status;
    if (out && minihost::NumberOf(minihost::Pull(*node.FindSlot("nodeState"))) == 0) {
        out = std::make_shared<MeshData>(*in.mesh);
        MItGeometry iterator(out, in);
        status = deform(data, iterator, WorldOf(*output), static_cast<unsigned>(in.index));
    }
    minihost::SetResult(*output, out);
    return status;
}

MStatus MPxDeformerNode::deform(MDataBlock&, MItGeometry&, const MMatrix&, unsigned) {
    return MS::kSuccess;
}

MItGeometry::MItGeometry(const MObject& mesh, MStatus* status)
    : mesh_(std::dynamic_pointer_cast<MeshData>(mesh.object())) {
    if (status) *status = mesh_ ? MS::kSuccess : MS::kInvalidParameter;
    for (int v = 0; mesh_ && v < mesh_->numVertices(); ++v) vertices_.push_back(v);
}

MItGeometry::MItGeometry(MeshPtr out, const minihost::DeformInput& in) : mesh_(std::move(out)) {
    in.ForEachMember([this](int v) { vertices_.push_back(v); });
}

MStatus MItGeometry::next() {
    if (isDone()) return MS::kFailure;
    ++place_;
    return MS::kSuccess;
}

MStatus MItGeometry::reset() {
    place_ = 0;
    return MS::kSuccess;
}

int MItGeometry::index() const {
    return isDone() ? -1 : vertices_[static_cast<size_t>(place_)];
}

MPoint MItGeometry::position(MSpace::Space) const {
    return isDone() ? MPoint() : MPoint(MFloatPoint(mesh_->points()[static_cast<size_t>(index())]));
}

MStatus MItGeometry::setPosition(const MPoint& point, MSpace::Space) {
    if (isDone()) return MS::kFailure;
    mesh_->EditPoints()[static_cast<size_t>(index())] = Single(point);
    return MS::kSuccess;
}

MStatus MItGeometry::allPositions(MPointArray& points, MSpace::Space) const {
    points.setLength(static_cast<unsigned>(count()));
    for (size_t i = 0; i < vertices_.size(); ++i)
        points[unsigned(i)] = MPoint(MFloatPoint(mesh_->points()[size_t(vertices_[i])]));
    return MS::kSuccess;
}

MStatus MItGeometry::setAllPositions(const MPointArray& points, MSpace::Space) {
    if (points.length() != vertices_.size()) return MS::kInvalidParameter;
    if (vertices_.empty()) return MS::kSuccess;
    std::vector<MFloatVector>& moved = mesh_->EditPoints();
    for (size_t i = 0; i < vertices_.size(); ++i)
        moved[size_t(vertices_[i])] = Single(points[unsigned(i)]);
    return MS::kSuccess;
}
