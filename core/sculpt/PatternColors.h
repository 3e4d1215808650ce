#pragma once

#include "core/math/LColor.h"
#include "core/sculpt/BrushWeights.h"
#include "core/sculpt/StrokePattern.h"

namespace VantrelSDK {

/// The colours that a step's pattern gives the surface. Made once a step, then asked for each
/// vertex.
class PatternColors {
  public:
    /// About a brush at c with the node's radius and frame.
    PatternColors(LNode& node, const LPoint3& c, const StrokePattern& pattern);

    /// Of vertex v at p. Under a brush, black outside it; in a symmetric stroke the mirror image of
    /// the brush has the pattern's mirror image. Black without a pattern.
    LAColor operator()(const LPoint3& p, int v) const;

  private:
    StrokePattern pattern_;
    int axis_;
    float radius2_;
    LPoint3 centre_, mirror_;
    PatternFrame frame_, mirrorFrame_;
};

}  // namespace VantrelSDK
