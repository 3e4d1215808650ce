#include "host/nodes/KelmoNode2.h"

#include "host/ml/Diagnostics.h"

namespace VantrelSDK {

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
    const auto input = [&data] {
        const bool before = data.inputValue(attributes_.m_moPoseUseCache).asBool();
        return data.inputValue(before ? attributes_.m_moInputGeomPreDef : attributes_.m_moInputGeom)
            .asMesh();
    };
    return Compute(output, asked, input, data);
}

}  // namespace VantrelSDK
