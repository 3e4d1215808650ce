#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::PaintRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {106, &C::ClearPaint},     {107, &C::InvertPaint},    {108, &C::FillPaint},
        {109, &C::ColorToStencil}, {110, &C::StencilToColor},
    };
    return rows;
}

/// The paint to work on; null in a stroke.
LColorDelta* NodeCommands::Paint() {
    return HasGeometry() && !node_.IsStroking() ? node_.lcolorDelta() : nullptr;
}

/// What brushes would paint on is what is meant, colours before stencils.
void NodeCommands::ClearPaint() {
    LColorDelta* paint = Paint();
    if (!paint) return;
    if (node_.getAffectVertexColor())
        node_.ClearVertColor();
    else if (node_.getAffectStencil())
        paint->ClearStencil();
    PaintChanged();
}

void NodeCommands::InvertPaint() {
    LColorDelta* paint = Paint();
    if (!paint) return;
    if (node_.getAffectVertexColor())
        paint->InvertDelta();
    else if (node_.getAffectStencil())
        paint->InvertStencil();
    PaintChanged();
}

void NodeCommands::FillPaint() {
    LColorDelta* paint = Paint();
    if (!paint) return;
    const LColor color = node_.GetVertexPaintColor();
    if (node_.getAffectVertexColor())
        node_.FloodVertColor();
    else if (node_.getAffectStencil())
        paint->FillStencil((color.r + color.g + color.b) / 3);
    PaintChanged();
}

void NodeCommands::ColorToStencil() {
    LColorDelta* paint = Paint();
    if (!paint) return;
    paint->ColorToStencil();
    PaintChanged();
}

void NodeCommands::StencilToColor() {
    LColorDelta* paint = Paint();
    if (!paint) return;
    paint->StencilToColor();
    PaintChanged();
}

/// Everything may have another colour.
void NodeCommands::PaintChanged() {
    if (LDisplayCache* shown = node_.ldisplayCache()) shown->TakeAllColors();
    OutputChanged();
}

}  // namespace VantrelSDK
