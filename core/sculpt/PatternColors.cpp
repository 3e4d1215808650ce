#include "core/sculpt/PatternColors.h"

#include "core/paint/LPattern.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

PatternColors::PatternColors(LNode& node, const LPoint3& c, const StrokePattern& pattern)
    : pattern_(pattern),
      axis_(SymmetryAxis(node.getSymetryMode())),
      radius2_(node.lradius() * node.lradius()),
      centre_(c),
      mirror_(node.MirrorPosition(c)) {
    const LPoint3 orth = node.lorth(), axial = node.laxial(), dir = node.ldir();
    const float radius = node.lradius();
    frame_ = {orth * radius, axial * radius, dir};
    mirrorFrame_ = {Mirrored(orth, axis_) * radius, Mirrored(axial, axis_) * radius,
                    Mirrored(dir, axis_)};
}

LAColor PatternColors::operator()(const LPoint3& p, int v) const {
    if (!pattern_) return LAColor::Black;
    if (pattern_.lie == StrokePattern::Lie::kUVs) {
        const LPoint2 uv = pattern_.UV(v);
        return pattern_.pattern->GetProjColor(uv.x, uv.y);
    }
    // Nothing stands in the view yet that a pattern could lie on.
    if (pattern_.lie == StrokePattern::Lie::kSheet) return LAColor::Black;
    float x, y;
    if ((p - centre_).LenSq() <= radius2_)
        frame_.Coords(p - centre_, x, y);
    else if (axis_ >= 0 && (p - mirror_).LenSq() <= radius2_)
        mirrorFrame_.Coords(p - mirror_, x, y);
    else
        return LAColor::Black;
    return pattern_.pattern->GetColor(x, y);
}

}  // namespace VantrelSDK
