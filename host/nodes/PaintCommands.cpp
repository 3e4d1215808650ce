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

void NodeCommands::EditPaint(PaintEdit edit) {
    if (HasGeometry() && node_.EditPaint(edit)) OutputChanged();
}

}  // namespace VantrelSDK
