#include "host/nodes/KelmoNode.h"

#include <maya/MArrayDataHandle.h>

#include "host/nodes/NodeEvaluation.h"

namespace VantrelSDK {

NodeAttributes KelmoNode::attributes_;

MPlug KelmoNode::inputPlug() const {
    const MPlug inputs(thisMObject(), input);
    const MPlug first = inputs.numElements() > 0 ? inputs[0] : inputs.elementByLogicalIndex(0);
    return first.child(inputGeom);
}

MPlug KelmoNode::outputPlug() const {
    const MPlug outputs(thisMObject(), outputGeom);
    return outputs.numElements() > 0 ? outputs[0] : outputs.elementByLogicalIndex(0);
}

MStatus KelmoNode::compute(const MPlug& asked, MDataBlock& data) {
    if (asked.attribute() != outputGeom || !asked.isElement()) return MS::kUnknownParameter;
    const auto mesh = [&] {
        MPlug in = MPlug(thisMObject(), input).elementByLogicalIndex(asked.logicalIndex());
        return data.inputValue(in.child(inputGeom)).asMesh();
    };
    const auto time = [&](MTime& now) {
        MStatus status;
        now = data.inputValue(attributes_.m_moInTime, &status).asTime();
        return status == MS::kSuccess;
    };
    MDataHandle to = data.outputValue(asked);
    const MStatus status =
        NodeEvaluation(*this).Compute(NodeEvaluation::Output::kGeometry, mesh, time, to);
    if (status) data.setClean(asked);
    return status;
}

MStatus KelmoNode::setDependentsDirty(const MPlug& changed, MPlugArray& affected) {
    if (changed.attribute() == inputGeom || changed.attribute() == input)
        NodeEvaluation(*this).InputBecameStale();
    NodeEvaluation(*this).SetDependentsDirty(changed, affected);
    return MPxDeformerNode::setDependentsDirty(changed, affected);
}

MStatus KelmoNode::connectionMade(const MPlug& own, const MPlug& other, bool asSrc) {
    NodeEvaluation(*this).ConnectionMade(own, other, asSrc);
    return MPxDeformerNode::connectionMade(own, other, asSrc);
}

MStatus KelmoNode::connectionBroken(const MPlug& own, const MPlug& other, bool asSrc) {
    NodeEvaluation(*this).ConnectionBroken(own, other, asSrc);
    return MPxDeformerNode::connectionBroken(own, other, asSrc);
}

}  // namespace VantrelSDK
