#include "core/sculpt/LDynMask.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::PaintRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {106, &C::ClearPaint},     {107, &C::InvertPaint},    {108, &C::FillPaint},
        {109, &C::ColorToStencil}, {110, &C::StencilToColor}, {211, &C::CountMasks},
        {212, &C::MaskName},       {213, &C::UpdateMask},
    };
    return rows;
}

void NodeCommands::ClearPaint() {
    EditPaint(PaintEdit::Clear);
}
void NodeCommands::InvertPaint() {
    EditPaint(PaintEdit::Invert);
}
void NodeCommands::FillPaint() {
    EditPaint(PaintEdit::Fill);
}
void NodeCommands::ColorToStencil() {
    EditPaint(PaintEdit::ColorToStencil);
}
void NodeCommands::StencilToColor() {
    EditPaint(PaintEdit::StencilToColor);
}

void NodeCommands::CountMasks() {
    Answer(static_cast<int>(node_.ldynmasks().size()));
}

void NodeCommands::MaskName() {
    const int index = Index();
    const auto& masks = node_.ldynmasks();
    const bool known = index >= 0 && index < static_cast<int>(masks.size());
    Answer(MString(known ? masks[static_cast<size_t>(index)]->GetName() : "not found"));
}

void NodeCommands::UpdateMask() {
    node_.UpdateMask(node_.getActiveMask());
}

void NodeCommands::EditPaint(PaintEdit edit) {
    if (HasGeometry() && node_.EditPaint(edit)) OutputChanged();
}

}  // namespace VantrelSDK
