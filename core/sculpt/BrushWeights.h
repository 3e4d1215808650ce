#pragma once

#include <optional>

#include "core/math/LPoint3.h"
#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/StrokePattern.h"

namespace VantrelSDK {

class LNode;

/// The axis that a symmetry setting mirrors: 0, 1, 2, or -1 for none.
int SymmetryAxis(int symmetry);

/// p with the component of the axis negated; p itself for axis -1.
LPoint3 Mirrored(LPoint3 p, int axis);

/// The frame in which a pattern lies under a brush: u along the screen's horizontal, v across it.
struct PatternFrame {
    LPoint3 u, v, normal;

    /// Where an offset from the brush's centre lies, in brush radii. The part along the normal is
    /// added to the offset before it is measured in the frame.
    void Coords(const LPoint3& offset, float& x, float& y) const;
};

/// How a brush weighs a position: falloff and pattern, and the mirror image of the brush in a
/// symmetric stroke. Made once a step from the node's settings, then asked for each vertex.
///
/// Set 1 is the curve of the dragging modes, set 2 that of the stroke modes; they also treat the
/// two sides of a symmetric brush differently.
class BrushWeights {
  public:
    enum class Set { kSculpt = 1, kPaint = 2 };
    /// What is taken of a pattern: its weight, or for colours its alpha.
    enum class Of { kWeight, kAlpha };

    /// Weighs about centre c with the node's radius, normal and frame. With symmetry snapping the
    /// mirrored centre is asked from the node, once.
    BrushWeights(LNode& node, Set set, const LPoint3& c, const StrokePattern& pattern,
                 Of of = Of::kWeight);

    /// The weight of vertex v at p: 0 outside the brush, the rim counted as inside. Not clamped.
    float operator()(const LPoint3& p, int v) const { return At(p, v, centre_, mirror_); }

    /// The same about another centre and its mirror image.
    float At(const LPoint3& p, int v, const LPoint3& centre, const LPoint3& mirror) const {
        const LPoint3 d = p - centre;
        const float a = d.LenSq();
        if (axis_ < 0) return a > radius2_ ? 0 : Pattern(frame_, d, v) * Falloff(a);
        const LPoint3 dm = p - mirror;
        const float b = dm.LenSq();
        if (a > radius2_ && b > radius2_) return 0;
        if (term_ >= Term::kUV) return Pattern(frame_, d, v) * NearerFalloff(a, b);
        return set_ == Set::kSculpt ? SculptWeight(d, dm, a, b) : PaintWeight(d, dm, a, b);
    }

    /// The curve at the square root of a squared distance; 1 when falloff is off.
    float Falloff(float distance2) const;

  private:
    /// What a pattern multiplies a weight by: nothing; its value or its alpha in a frame; the same
    /// by a vertex's UV.
    enum class Term { kOne, kFrame, kFrameAlpha, kUV, kUVAlpha };

    Term TermOf(const StrokePattern& pattern, int patternMode, Of of) const;
    /// The falloff of the side that has more of it, of those within the radius.
    float NearerFalloff(float a, float b) const;
    /// d and dm are the offsets from the centre and from its mirror image, a and b their squares.
    float SculptWeight(const LPoint3& d, const LPoint3& dm, float a, float b) const;
    float PaintWeight(const LPoint3& d, const LPoint3& dm, float a, float b) const;
    float Pattern(const PatternFrame& frame, const LPoint3& offset, int v) const {
        return term_ == Term::kOne ? 1 : PatternTerm(frame, offset, v);
    }
    float PatternTerm(const PatternFrame& frame, const LPoint3& offset, int v) const;
    /// In a frame alone.
    float Pattern(const PatternFrame& frame, const LPoint3& offset) const {
        return Pattern(frame, offset, -1);
    }

    Set set_;
    int axis_;
    bool soft_, ramp_;
    float min_, max_, radius_, radius2_;
    std::optional<FalloffSampler> curve_;
    StrokePattern pattern_;
    Term term_;
    LPoint3 centre_, mirror_;
    /// The direct frame, the mirrored frame, and the direct frame with the mirrored normal.
    PatternFrame frame_, mirrorFrame_, mixedFrame_;
};

}  // namespace VantrelSDK
