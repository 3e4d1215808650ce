#include "maya/MBoundingBox.h"

#include <algorithm>

void MBoundingBox::expand(const MPoint& p) {
    if (empty_) {
        min_ = max_ = p;
        empty_ = false;
        return;
    }
    min_ = {std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z)};
    max_ = {std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z)};
}

void MBoundingBox::expand(const MBoundingBox& box) {
    if (box.empty_) return;
    expand(box.min_);
    expand(box.max_);
}

void MBoundingBox::transformUsing(const MMatrix& matrix) {
    if (empty_) return;
    MBoundingBox moved;
    for (int corner = 0; corner < 8; ++corner)
        moved.expand(MPoint(corner & 1 ? max_.x : min_.x, corner & 2 ? max_.y : min_.y,
                            corner & 4 ? max_.z : min_.z) *
                     matrix);
    *this = moved;
}

bool MBoundingBox::contains(const MPoint& p) const {
    return !empty_ && p.x >= min_.x && p.x <= max_.x && p.y >= min_.y && p.y <= max_.y &&
           p.z >= min_.z && p.z <= max_.z;
}

MPoint MBoundingBox::center() const {
    return {(min_.x + max_.x) / 2, (min_.y + max_.y) / 2, (min_.z + max_.z) / 2};
}
