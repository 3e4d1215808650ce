#include "host/nodes/KelmoNode.h"

namespace VantrelSDK {

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
    return Compute(NodeEvaluation::Output::kGeometry, asked, mesh, data);
}

}  // namespace VantrelSDK
