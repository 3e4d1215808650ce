#include "core/sculpt/BrushWeights.h"

#include <algorithm>
#include <cmath>

#include "core/paint/LPattern.h"
#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

int SymmetryAxis(int symmetry) {
    return symmetry >= 1 && symmetry <= 3 ? symmetry - 1 : -1;
}

LPoint3 Mirrored(LPoint3 p, int axis) {
    if (axis == 0) p.x = -p.x;
    if (axis == 1) p.y = -p.y;
    if (axis == 2) p.z = -p.z;
    return p;
}

void PatternFrame::Coords(const LPoint3& offset, float& x, float& y) const {
    const LPoint3 e = offset + normal * (offset % normal);
    const float a = e % u, b = e % v, g = u % u, f = u % v, h = v % v;
    const float k = 1 / (g * h - f * f);
    x = (a * h - f * b) * k;
    y = (g * b - a * f) * k;
}

BrushWeights::BrushWeights(LNode& node, Set set, const LPoint3& c, const StrokePattern& pattern,
                           Of of)
    : set_(set),
      axis_(SymmetryAxis(node.getSymetryMode())),
      soft_(set == Set::kSculpt ? node.useSoftFalloff() : node.useSoftFalloff2()),
      ramp_(set == Set::kSculpt ? node.useBicubFalloff() : node.useBicubFalloff2()),
      min_(set == Set::kSculpt ? node.getFalloffMin() : node.getFalloffMin2()),
      max_(set == Set::kSculpt ? node.getFalloffMax() : node.getFalloffMax2()),
      radius_(node.lradius()),
      radius2_(radius_ * radius_),
      pattern_(pattern),
      term_(TermOf(pattern, node.getPatternMode(), of)),
      centre_(c),
      mirror_(node.MirrorPosition(c)) {
    const LFalloffCache* curve = set == Set::kSculpt ? node.lfalloff1() : node.lfalloff2();
    if (curve) curve_.emplace(*curve, radius_);
    if (!pattern) return;
    const LPoint3 normal = node.lnormal(), orth = node.lorth();
    const LPoint3 mirrorNormal = Mirrored(normal, axis_), mirrorOrth = Mirrored(orth, axis_);
    frame_ = {orth * radius_, node.laxial() * radius_, normal};
    mirrorFrame_ = {mirrorOrth * radius_, Normalized(mirrorNormal ^ mirrorOrth) * radius_,
                    mirrorNormal};
    mixedFrame_ = {frame_.u, frame_.v, mirrorNormal};
}

float BrushWeights::Falloff(float distance2) const {
    if (!soft_) return 1;
    const float distance = std::sqrt(distance2);
    if (ramp_) return curve_ ? (*curve_)(distance) : 0;
    return static_cast<float>((1.0 - static_cast<double>(distance) / radius_) *
                                  (static_cast<double>(max_) - min_) +
                              min_);
}

BrushWeights::Term BrushWeights::TermOf(const StrokePattern& pattern, int patternMode,
                                        Of of) const {
    if (!pattern) return Term::kOne;
    if (pattern.lie == StrokePattern::Lie::kUVs)
        return of == Of::kAlpha ? Term::kUVAlpha : Term::kUV;
    // A symmetric stroke knows patterns as stamps alone.
    if (axis_ >= 0) return Term::kFrame;
    // Nothing stands in the view yet that a pattern could lie on.
    if (pattern.lie == StrokePattern::Lie::kSheet) return Term::kOne;
    if (of == Of::kWeight) return Term::kFrame;
    return patternMode == 0 ? Term::kFrameAlpha : Term::kOne;
}

float BrushWeights::PatternTerm(const PatternFrame& frame, const LPoint3& offset, int v) const {
    const LPattern& pattern = *pattern_.pattern;
    if (term_ >= Term::kUV) {
        const LPoint2 uv = pattern_.UV(v);
        return term_ == Term::kUV ? pattern.GetProjWeight(uv.x, uv.y)
                                  : pattern.GetProjColor(uv.x, uv.y).a;
    }
    float x, y;
    frame.Coords(offset, x, y);
    if (term_ == Term::kFrame) return pattern.GetWeight(x, y);
    return x >= -1 && x <= 1 && y >= -1 && y <= 1 ? pattern.GetColor(x, y).a : 0;
}

float BrushWeights::NearerFalloff(float a, float b) const {
    if (b > radius2_) return Falloff(a);
    if (a > radius2_) return Falloff(b);
    return std::max(Falloff(a), Falloff(b));
}

float BrushWeights::SculptWeight(const LPoint3& d, const LPoint3& dm, float a, float b) const {
    if (!soft_) return 1;
    const float direct = Pattern(frame_, d) * Falloff(a);
    if (direct > 0 && b > radius2_) return direct;
    const float mirrored = Pattern(mixedFrame_, dm) * Falloff(b);
    if (mirrored > 0 && a > radius2_) return mirrored;
    return std::max(std::min(direct, 1.0f), std::min(mirrored, 1.0f));
}

float BrushWeights::PaintWeight(const LPoint3& d, const LPoint3& dm, float a, float b) const {
    if (b > radius2_) return Pattern(frame_, d) * Falloff(a);
    if (a > radius2_) return Pattern(mirrorFrame_, dm) * Falloff(b);
    return std::max(Pattern(frame_, d) * Falloff(a), Pattern(mixedFrame_, dm) * Falloff(b));
}

}  // namespace VantrelSDK
