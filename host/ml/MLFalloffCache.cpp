#include "host/ml/MLFalloffCache.h"

#include <maya/MFloatArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>

#include <algorithm>

#include "host/ml/MLNode.h"

namespace VantrelSDK {

std::optional<Ramp> LinearRamp(const MRampAttribute& plug) {
    MIntArray indices, kinds;
    MFloatArray positions, values;
    plug.getEntries(indices, positions, values, kinds);
    if (positions.length() == 0) return Ramp{{0, 1}, {1, 0}};
    Ramp ramp;
    for (unsigned i = 0; i < positions.length(); ++i) {
        if (kinds[i] != MRampAttribute::kLinear) return std::nullopt;
        ramp.push_back({positions[i], values[i]});
    }
    std::ranges::stable_sort(ramp, {}, &RampPoint::position);
    return ramp;
}

void MLFalloffCache::Compute() {
    const MPlug ramp = node_.plug(ramp_);
    if (ramp.isNull()) {
        MGlobal::displayError("MLFalloffCache: ramp plug is NULL");
        return;
    }
    const MRampAttribute plug(ramp);
    const std::optional<Ramp> linear = LinearRamp(plug);
    float t = 0;
    for (size_t i = 0; i < values.size(); ++i, t += dt) {
        locations[i] = t;
        float value = 1;
        MStatus status;
        if (linear)
            value = RampValue(*linear, t);
        else
            plug.getValueAtPosition(t, value, &status);
        if (!status) {
            MGlobal::displayError("MLFalloffCache: can not grab ramp value\n");
            value = 1;
        }
        values[i] = value;
    }
}

}  // namespace VantrelSDK
