#include "core/paint/LPatternCollection.h"
#include "core/sculpt/LNode.h"
#include "core/sculpt/PatternColors.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

LPattern* LNode::GetActivePattern() const {
    return lpatterns_ ? lpatterns_->GetActivePattern() : nullptr;
}

/// The active pattern as it lies where no vertex is known: not by UVs.
StrokePattern LNode::FramePattern() const {
    using Lie = StrokePattern::Lie;
    return {GetActivePattern(), getPatternMode() == 1 ? Lie::kSheet : Lie::kBrush};
}

/// The channel that patterns lie on the surface by; null in another mode, and without such a one.
const LUVSubdivChannel* LNode::GetPatternChannel() const {
    const int channel = getPatternUVchannel();
    if (getPatternMode() != 2 || !lobject_ || channel < 0 ||
        channel >= lobject_->GetNumUVChannels())
        return nullptr;
    const LUVSubdivChannel* uvs = lobject_->GetUVChannel(channel);
    return uvs && !uvs->IsEmpty() ? uvs : nullptr;
}

StrokePattern LNode::GetStrokePattern() {
    StrokePattern stroke = FramePattern();
    const LUVSubdivChannel* channel = stroke ? GetPatternChannel() : nullptr;
    if (!channel || !lmeshCache_) return stroke;
    lgeomidx2uv_.Update(*lobject_, getPatternUVchannel());
    stroke.pattern->MakeProjection();
    stroke.lie = StrokePattern::Lie::kUVs;
    stroke.pointOf = lgeomidx2uv_.ByVertex();
    stroke.points = channel->AllVerts();
    return stroke;
}

void LNode::PreparePattern() {
    if (lsculpt_ && !lstroke_) GetStrokePattern();
}

LAColor LNode::getPatternColor(const LPoint3& p, const LPoint3& c) {
    StrokePattern stamp = FramePattern();
    stamp.lie = StrokePattern::Lie::kBrush;
    return PatternColors(*this, c, stamp)(p, -1);
}

float LNode::calcWeight(int, const LPoint3& p, const LPoint3& c) {
    return BrushWeights(*this, BrushWeights::Set::kSculpt, c, FramePattern())(p, -1);
}

float LNode::calcWeight2(int, const LPoint3& p, const LPoint3& c) {
    return BrushWeights(*this, BrushWeights::Set::kPaint, c, FramePattern())(p, -1);
}

float LNode::calcWeight3(const LPoint3& p, const LPoint3& c) {
    return BrushWeights(*this, BrushWeights::Set::kPaint, c, FramePattern(),
                        BrushWeights::Of::kAlpha)(p, -1);
}

float LNode::calcWeight2tex(const LPoint3& p, const LPoint3& c) {
    return BrushWeights(*this, BrushWeights::Set::kPaint, c, {})(p, -1);
}

float LNode::UVWeight(bool sculpt, bool alpha, const LPoint3& p, const LPoint3& c, int point) {
    StrokePattern pattern = FramePattern();
    if (const LUVSubdivChannel* channel = pattern ? GetPatternChannel() : nullptr) {
        pattern.lie = StrokePattern::Lie::kUVs;
        pattern.pointOf = &point;
        pattern.points = channel->AllVerts();
        if (point < 0 || point >= static_cast<int>(pattern.points.size())) pattern = {};
    } else {
        pattern = {};
    }
    return BrushWeights(*this, sculpt ? BrushWeights::Set::kSculpt : BrushWeights::Set::kPaint, c,
                        pattern,
                        alpha ? BrushWeights::Of::kAlpha : BrushWeights::Of::kWeight)(p, 0);
}

float LNode::calcWeightUV(const LPoint3& p, const LPoint3& c, int uvIndex) {
    return UVWeight(true, false, p, c, uvIndex);
}
float LNode::calcWeightUV2(const LPoint3& p, const LPoint3& c, int uvIndex) {
    return UVWeight(false, false, p, c, uvIndex);
}
float LNode::calcWeightUV3(const LPoint3& p, const LPoint3& c, int uvIndex) {
    return UVWeight(false, true, p, c, uvIndex);
}

bool LNode::adjustBrushPattern(float& savedRadius) {
    if (getUseChainPatternStamps()) {
        if (!stampChainStarted_) {
            stampChainStarted_ = true;
            stampPos_ = ltrans_[2];
            return false;
        }
        if ((ltrans_[2] - stampPos_).Len() < 2 * lradius_) return false;
        laxial_ = Normalized(ltrans_[2] - (stampPos_ + laxial_ * lradius_));
        stampPos_ = ltrans_[2];
        lorth_ = Normalized(lnormal_ ^ laxial_);
        return true;
    }
    const LPoint3 along = ltrans_[2] - ltrans_[1];
    if (along == LPoint3::Zero) return false;
    laxial_ = Normalized(along);
    lorth_ = Normalized(lnormal_ ^ laxial_);
    if (getUseRandomPatternScale()) {
        savedRadius = lradius_;
        lradius_ *=
            static_cast<float>(rgen_->RandDouble(getMinPatternScale(), getMaxPatternScale()));
    }
    if (getUseRandomPatternRotation()) {
        const float r = getMaxPatternRotation() / 180.0f;
        const float angle = static_cast<float>(rgen_->RandDouble(-r, r)) * 3.1415927f;
        LMatrix3 turn;
        turn.SetRotation(ldir_, angle);
        lorth_ = turn.TransfromVector(lorth_);
        laxial_ = turn.TransfromVector(laxial_);
    }
    if (getUseRandomPatternOffset()) {
        const float m = getMaxPatternOffset();
        const float x = static_cast<float>(rgen_->RandDouble(-m, m));
        const float y = static_cast<float>(rgen_->RandDouble(-m, m));
        ltrans_[2] += (lorth_ * x + laxial_ * y) * lradius_;
    }
    return true;
}

}  // namespace VantrelSDK
