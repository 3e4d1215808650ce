#include "core/sculpt/LNode.h"
#include "core/sculpt/StrokeListener.h"

namespace VantrelSDK {

bool LNode::CreateColorDelta() {
    if (!lobject_ || lobject_->IsEmpty()) return false;
    lcolorDelta_ = std::make_unique<LColorDelta>(this, *lobject_->GetOrigGeom());
    return true;
}

void LNode::ClearVertColor() {
    if (!lcolorDelta_ || lstroke_) return;
    lcolorDelta_->ClearDelta();
    if (ldisplayCache_) ldisplayCache_->ClearColor();
}

void LNode::FloodVertColor() {
    if (!lcolorDelta_ || lstroke_) return;
    const LColor color = GetVertexPaintColor();
    lcolorDelta_->FillDelta(color);
    if (!ldisplayCache_) return;
    if (!ldisplayCache_->useColors()) ldisplayCache_->SetUseColor(true);
    ldisplayCache_->FillColor(color);
}

void LNode::PrepareColours() {
    if (!lsculpt_ || !ldisplayCache_ || !HasColours()) return;
    if (getAffectVertexColor()) ldisplayCache_->TakeColors({});
    if (getAffectStencil()) ldisplayCache_->TakeStencils({});
}

void LNode::SetMtlSet(std::unique_ptr<LMaterialSet> set) {
    mtlset_ = std::move(set);
    ++mtlSets_;
}

/// Edits the maps where brushes would paint on them, or their stencils; false where they don't.
bool LNode::EditMaps(PaintEdit edit) {
    const bool texels = getAffectTexture(true), stencils = !texels && getAffectTexStencil(true);
    if (!texels && !stencils) return false;
    for (unsigned m = 0; m < mtlset_->GetNumMaterials(); ++m) {
        LTexture* map = mtlset_->GetMaterial(m)->GetMap(0);
        if (texels && edit == PaintEdit::Clear) map->Clear();
        if (texels && edit == PaintEdit::Invert) map->Invert();
        if (texels && edit == PaintEdit::Fill) map->Fill(GetVertexPaintColor());
        if (stencils && edit != PaintEdit::Invert) map->ClearStencil();
        if (stencils && edit != PaintEdit::Clear) map->InvertStencil();
    }
    return true;
}

bool LNode::EditPaint(PaintEdit edit) {
    if (lstroke_) return false;
    const bool wholeMaps = edit != PaintEdit::ColorToStencil && edit != PaintEdit::StencilToColor;
    const bool maps = wholeMaps && EditMaps(edit);
    if (!lcolorDelta_) return maps;
    const bool colours = getAffectVertexColor(), stencils = !colours && getAffectStencil();
    const bool converts = edit == PaintEdit::ColorToStencil || edit == PaintEdit::StencilToColor;
    if (!colours && !stencils && !converts) return true;
    if (lcurMorph_) {
        KeepUndosInStep();
        lcolorDelta_->CacheUndo(true);
        lcurMorph_->FakeUndo();
    }
    switch (edit) {
        case PaintEdit::Clear:
            if (colours) ClearVertColor();
            if (stencils) lcolorDelta_->ClearStencil();
            break;
        case PaintEdit::Invert:
            if (colours) lcolorDelta_->InvertDelta();
            if (stencils) lcolorDelta_->InvertStencil();
            break;
        case PaintEdit::Fill:
            if (colours) FloodVertColor();
            if (stencils) {
                const LColor color = GetVertexPaintColor();
                lcolorDelta_->FillStencil((color.r + color.g + color.b) / 3);
            }
            break;
        case PaintEdit::ColorToStencil:
            lcolorDelta_->ColorToStencil();
            break;
        case PaintEdit::StencilToColor:
            lcolorDelta_->StencilToColor();
            break;
    }
    if (ldisplayCache_) ldisplayCache_->TakeAllColors();
    if (listener_) listener_->Painted(edit);
    return true;
}

/// The colour delta's record of a stroke, before the delta gets its own. Returns how many vertices
/// the stroke painted.
int LNode::CacheColourUndo() {
    if (!lcolorDelta_) return 0;
    KeepUndosInStep();
    if (AffectsColours() || !lcolorDelta_->DirtyVerts().empty())
        return lcolorDelta_->CacheUndo(false);
    lcolorDelta_->FakeUndo();
    return 0;
}

/// What forgets the strokes of the delta alone, such as a frame that replaces it, forgets those of
/// the colours too.
void LNode::KeepUndosInStep() {
    if (lcolorDelta_ && lcurMorph_->GetNumUndos() == 0) lcolorDelta_->FlushUndo();
}

bool LNode::AffectsColours() const {
    return getAffectVertexColor() || getAffectStencil();
}

/// The colour delta when a stroke affects it.
LColorDelta* LNode::StrokeColours() const {
    return HasColours() && AffectsColours() ? lcolorDelta_.get() : nullptr;
}

/// What the stencil lets no stroke move, by vertex; null when it counts for nothing.
const float* LNode::StrokeStencil() const {
    const bool protects = getUseStencil() && HasColours() && !lcolorDelta_->IsZeroStencil();
    return protects ? lcolorDelta_->Stencils() : nullptr;
}

/// There is a colour delta, at the level of the object.
bool LNode::HasColours() const {
    return lcolorDelta_ && lcolorDelta_->GetNumVerts(-1) == lobject_->GetNumVerts();
}

}  // namespace VantrelSDK
