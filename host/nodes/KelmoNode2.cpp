#include "host/nodes/KelmoNode2.h"

#include "host/ml/Diagnostics.h"
#include "host/nodes/NodeEvaluation.h"

namespace VantrelSDK {

NodeAttributes KelmoNode2::attributes_;

MPlug KelmoNode2::inputPlug() const {
    const bool before = plug(&NodeAttributes::m_moPoseUseCache).asBool();
    return plug(before ? &NodeAttributes::m_moInputGeomPreDef : &NodeAttributes::m_moInputGeom);
}

MStatus KelmoNode2::compute(const MPlug& asked, MDataBlock& data) {
    using Output = NodeEvaluation::Output;
    Output output;
    if (asked == attributes_.m_moOutputGeom)
        output = Output::kGeometry;
    else if (asked == attributes_.m_moOutputProxy)
        output = Output::kProxy;
    else if (asked == attributes_.m_moDisplayCbk)
        output = Output::kDisplay;
    else
        return MS::kUnknownParameter;
    Log("KelmoNode2::compute(" + asked.partialName() + ")");
    const auto input = [&] {
        const bool before = data.inputValue(attributes_.m_moPoseUseCache).asBool();
        return data.inputValue(before ? attributes_.m_moInputGeomPreDef : attributes_.m_moInputGeom)
            .asMesh();
    };
    const auto time = [&](MTime& now) {
        MStatus status;
        now = data.inputValue(attributes_.m_moInTime, &status).asTime();
        return status == MS::kSuccess;
    };
    MDataHandle to = data.outputValue(asked);
    const MStatus status = NodeEvaluation(*this).Compute(output, input, time, to);
    if (status) data.setClean(asked);
    return status;
}

MStatus KelmoNode2::setDependentsDirty(const MPlug& changed, MPlugArray& affected) {
    NodeEvaluation(*this).SetDependentsDirty(changed, affected);
    return MPxNode::setDependentsDirty(changed, affected);
}

MStatus KelmoNode2::connectionMade(const MPlug& own, const MPlug& other, bool asSrc) {
    NodeEvaluation(*this).ConnectionMade(own, other, asSrc);
    return MPxNode::connectionMade(own, other, asSrc);
}

MStatus KelmoNode2::connectionBroken(const MPlug& own, const MPlug& other, bool asSrc) {
    NodeEvaluation(*this).ConnectionBroken(own, other, asSrc);
    return MPxNode::connectionBroken(own, other, asSrc);
}

}  // namespace VantrelSDK
