#include "host/ml/MLFalloffCache.h"

#include <maya/MFloatArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MRampAttribute.h>

#include <algorithm>

#include "core/sculpt/LNodeSettings.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

/// The curve as the core has it, when it is linear between its points; a curve without points falls
/// from the centre to the rim.
bool IsLinear(const MRampAttribute& plug, Ramp& ramp) {
    MIntArray indices, kinds;
    MFloatArray positions, values;
    plug.getEntries(indices, positions, values, kinds);
    if (positions.length() == 0) ramp = {{0, 1}, {1, 0}};
    for (unsigned i = 0; i < positions.length(); ++i) {
        if (kinds[i] != MRampAttribute::kLinear) return false;
        ramp.push_back({positions[i], values[i]});
    }
    std::ranges::stable_sort(ramp, {}, &RampPoint::position);
    return true;
}

}  // namespace

void MLFalloffCache::Compute() {
    const MPlug ramp = node_.plug(ramp_);
    if (ramp.isNull()) {
        MGlobal::displayError("MLFalloffCache: ramp plug is NULL");
        return;
    }
    const MRampAttribute plug(ramp);
    Ramp points;
    const bool linear = IsLinear(plug, points);
    float t = 0;
    for (size_t i = 0; i < values.size(); ++i, t += dt) {
        locations[i] = t;
        float value = 1;
        MStatus status;
        if (linear)
            value = RampValue(points, t);
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
