#include <algorithm>
#include <cmath>

#include "core/sculpt/BrushMode.h"
#include "core/sculpt/LNode.h"
#include "core/sculpt/StrokeListener.h"
#include "core/sculpt/StrokeStep.h"

namespace VantrelSDK {

bool LNode::InitTransform(const LPoint3& pos, const LPoint3& dir, const LPoint3& orth,
                          const LPoint3& normal, const LPoint2& screen, float radius, int mode,
                          bool force) {
    lmode_ = -1;
    if (!lobject_ || !lcurMorph_) return false;
    if (listener_) listener_->Pressed(pos, dir, orth, normal, screen, radius, mode);
    lcurMorph_->SetDetailsDirty(true);
    lstroke_ = true;
    lsnapOK_ = false;
    // Not a position that a stroke could ask for.
    lsymmC_ = LPoint3(NAN, NAN, NAN);
    ltrans_.fill(pos);
    lscreen_.fill(screen);
    ldir_ = dir;
    lorth_ = orth;
    laxial_ = dir ^ orth;
    lnormal_ = normal;
    lnormHist_.fill(LPoint3::Zero);
    lradius_ = radius;
    lmode_ = mode;
    stampChainStarted_ = false;
    firststep_ = true;
    touched_ = 0;
    if (getAffectGeometry()) lcurMorph_->AllockBack();
    if (LColorDelta* colours = StrokeColours()) {
        colours->AllockBack();
        PrepareColours();
    }
    dragged_.clear();
    preparedMode_ = -1;
    Prepare(getTransformMode(true), true, force);
    return true;
}

void LNode::Prepare(int mode, bool atPress, bool force) {
    preparedMode_ = mode;
    const BrushMode* brush = FindBrushMode(mode);
    if (!brush || !loctTree_ || !ldisplayCache_) return;
    StrokeStep step = MakeStep(mode);
    brush->prepare(step, atPress, force);
}

StrokeStep LNode::MakeStep(int mode) {
    const bool useSelected = luseSelected_ && lobject_->HasVertsSelected();
    LColorDelta* colours = StrokeColours();
    // A setting may come on inside a stroke.
    if (colours) colours->AllockBack();
    return {.node = *this,
            .mode = mode,
            .affectGeometry = getAffectGeometry(),
            .affectColor = colours && getAffectVertexColor(),
            .affectStencil = colours && getAffectStencil(),
            .colours = colours,
            .colorStrength = getVertColorStrength(true),
            .axis = SymmetryAxis(getSymetryMode()),
            .pushPullMode = getPushPullMode(),
            .pressure = getBrushPaintPressure(true),
            .pattern = GetStrokePattern(),
            .mask = GetMask(),
            .stencil = StrokeStencil(),
            .selected = useSelected ? lobject_->SelectedVerts().data() : nullptr,
            .base = BaseShape().GetAllVertsPtr(),
            .delta = lcurMorph_->GetOrigMesh()->GetAllVertsPtr(),
            .start = lmeshCache_->GetVertsPtr(),
            .hits = hits_};
}

bool LNode::Transform(const LPoint3& pos, const LPoint2& screen, const LPoint3& normal) {
    if (!HasStroke() || ltrans_[2] == pos) return false;
    if (listener_) listener_->Moved(pos, screen, normal);
    // The new normal counts twice among the five.
    lnormHist_ = {normal, normal, lnormHist_[0], lnormHist_[1], lnormHist_[2]};
    lnormal_ = LPoint3::Zero;
    for (const LPoint3& n : lnormHist_) lnormal_ += n;
    lnormal_.Normalize();
    ltrans_[3] = ltrans_[1];
    ltrans_[1] = ltrans_[2];
    ltrans_[2] = pos;
    lscreen_[1] = lscreen_[2];
    lscreen_[2] = screen;

    const int mode = getTransformMode(true);
    const BrushMode* brush = FindBrushMode(mode);
    float savedRadius = -1;
    // A stamp along the stroke may not be due yet.
    const bool stamps = IsPaintTransformMode(mode) && GetActivePattern() && getPatternMode() == 0;
    if (brush && loctTree_ && ldisplayCache_ && (!stamps || adjustBrushPattern(savedRadius))) {
        if (mode != preparedMode_) Prepare(mode, false, false);
        StrokeStep step = MakeStep(mode);
        if (brush->step(step)) {
            lcurMorph_->SetLevelChangedFlag(true);
            ldisplayCache_->CalcChanged(true);
        }
    }
    if (savedRadius != -1) lradius_ = savedRadius;
    firststep_ = false;
    return true;
}

void LNode::FinishTransform(bool clearWeights) {
    if (!lstroke_) return;
    EndStroke(clearWeights);
    if (listener_) listener_->Released();
}

void LNode::EndStroke(bool clearWeights) {
    lstroke_ = false;
    lmode_ = -1;
    stampChainStarted_ = false;
    if (!lobject_ || !lcurMorph_) return;
    if (clearWeights) lobject_->ClearWeights();
    if (ldisplayCache_) {
        ldisplayCache_->CachePushPullNormas();
        ldisplayCache_->ClearDirtyBoxes();
    }
    const int painted = CacheColourUndo();
    if (!getAffectGeometry()) {
        lcurMorph_->FakeUndo();
        touched_ = painted;
        return;
    }
    if (lmeshCache_) {
        updateSculptCache();
        SurfaceChanged(lcurMorph_->DirtyVerts());
    }
    touched_ = std::max(lcurMorph_->CacheUndo(false), painted);
}

/// Lets the tree follow these vertices of lmeshCache.
void LNode::SurfaceChanged(std::span<const int> verts) {
    if (!lsculpt_ || verts.empty()) return;
    ActiveCaches().shown = ++surface_;
    if (!prefGlidingTool || !loctTree_) return;
    if (prefTreeUpdateOnStrokeEnd == 3)
        buildOctTree();
    else
        loctTree_->Recalc(lmeshCache_->GetVertsPtr(), verts);
}

bool LNode::UndoStroke() {
    if (!lcurMorph_ || lstroke_) return false;
    std::vector<int> restored, painted;
    KeepUndosInStep();
    const bool any = lcurMorph_->GetNumUndos() > 0;
    const bool moved = lcurMorph_->Undo(&restored);
    const bool recoloured = lcolorDelta_ && lcolorDelta_->Undo(&painted);
    if (recoloured && ldisplayCache_) {
        ldisplayCache_->Clear(false);
        ldisplayCache_->SetChanged({}, painted);
        if (ldisplayCache_->useColors()) ldisplayCache_->TakeColors(painted);
        if (ldisplayCache_->HasStencils() || !lcolorDelta_->IsZeroStencil())
            ldisplayCache_->TakeStencils(painted);
    }
    if (listener_ && any) listener_->Undone();
    if (!moved) return recoloured;
    lcurMorph_->SetDetailsDirty(true);
    if (!lsculpt_) return true;
    const LPoint3 *base = BaseShape().GetAllVertsPtr(),
                  *delta = lcurMorph_->GetOrigMesh()->GetAllVertsPtr();
    LPoint3* verts = lmeshCache_->GetVertsPtr();
    for (const int v : restored) verts[v] = base[v] + delta[v];
    if (!recoloured) ldisplayCache_->Clear(false);
    ldisplayCache_->SetVertsMoved(restored);
    ldisplayCache_->CalcChanged(true);
    ldisplayCache_->CachePushPullNormas();
    SurfaceChanged(restored);
    return true;
}

}  // namespace VantrelSDK
