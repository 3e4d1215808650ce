#pragma once

namespace VantrelSDK {

/// A stamp that shapes a brush.
class LPattern {
  public:
    virtual ~LPattern() = default;
    /// The stamp's value, 0 to 1, at u and v in brush radii: -1 to 1 across the brush.
    virtual float GetWeight(float u, float v) const = 0;
};

}  // namespace VantrelSDK
