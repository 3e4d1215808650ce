#include "app/window/Brushes.h"

#include <algorithm>

namespace kelmo {

namespace {

constexpr Brush kDrag[] = {
    {0, "Move", "M", "Press and drag: what is under the brush follows the pointer."},
    {1, "Rotate", "",
     "Press and drag: turns what is under the brush about the place of the press."},
    {2, "Pull", "", "Press and drag: raises what is under the brush along its normal."},
    {3, "Push", "", "Press and drag: lowers what is under the brush."},
    {4, "Inflate", "N", "Press and drag: every part moves along its own normal."},
    {5, "Sharpen", "", "Press and drag: deepens what stands out from the smoothed shape."},
    {6, "Smooth", "", "Press and drag: evens out what is under the brush."},
    {7, "Blend", "", "Press and drag: goes towards the shape that was chosen to blend to."},
};
constexpr Brush kPaint[] = {
    {8, "Brush Pull", "1", "Builds up along the stroke."},
    {9, "Brush Push", "2", "Digs in along the stroke."},
    {10, "Attract", "3", "Gathers the surface towards the stroke: creases and ridges."},
    {11, "Repel", "4", "Pushes the surface away from the stroke."},
    {12, "Smooth Brush", "5", "Evens out along the stroke; smooths colours and stencils too."},
    {13, "Sharpen Brush", "6", "Deepens detail along the stroke."},
    {14, "Blend Brush", "", "Goes towards the shape that was chosen to blend to."},
    {15, "Drag", "7", "Drags the surface, or its colours, along the stroke."},
    {16, "Flatten", "8", "Levels what is under the brush to its mean plane."},
    {17, "Relax", "9", "Evens out the spacing of vertices and keeps the shape."},
    {19, "Erase", "0",
     "Takes back what was sculpted since the session began, or what was painted."},
};

}  // namespace

std::span<const Brush> DragBrushes() {
    return kDrag;
}
std::span<const Brush> PaintBrushes() {
    return kPaint;
}

const Brush* FindBrush(int mode) {
    for (const auto brushes : {DragBrushes(), PaintBrushes()})
        if (const auto found = std::ranges::find(brushes, mode, &Brush::mode);
            found != brushes.end())
            return &*found;
    return nullptr;
}

bool Paints(int mode) {
    constexpr int kModes[] = {8, 9, 12, 13, 14, 16, 19};
    return std::ranges::count(kModes, mode) > 0;
}

}  // namespace kelmo
