#pragma once

#include <maya/MRampAttribute.h>

#include <optional>

#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/LNodeSettings.h"
#include "host/nodes/NodeAttributes.h"

namespace VantrelSDK {

class MLNode;

/// The curve as the core has it, when it is linear between its points; a curve without points falls
/// from the centre to the rim.
std::optional<Ramp> LinearRamp(const MRampAttribute& plug);

/// A falloff curve that is a ramp of the host's. It belongs to the node, and would keep the node
/// alive if it held the plug.
class MLFalloffCache : public LFalloffCache {
  public:
    /// Samples the curve at once. The node is borrowed.
    MLFalloffCache(const MLNode& node, NodeAttributes::Member ramp, unsigned count)
        : LFalloffCache(count), node_(node), ramp_(ramp) {
        Compute();
    }
    /// Where the curve can't be read it is 1. A null plug leaves it as it was. Both are told.
    void Compute() override;

  private:
    const MLNode& node_;
    NodeAttributes::Member ramp_;
};

}  // namespace VantrelSDK
