#pragma once

#include "maya/MMatrix.h"
#include "maya/MPoint.h"

/// A box along the axes; empty until something is put in.
class MBoundingBox {
  public:
    MBoundingBox() = default;
    MBoundingBox(const MPoint& a, const MPoint& b) {
        expand(a);
        expand(b);
    }

    void clear() { *this = MBoundingBox(); }
    void expand(const MPoint& p);
    void expand(const MBoundingBox& box);
    /// The box about this one's corners after a transformation.
    void transformUsing(const MMatrix& matrix);
    bool contains(const MPoint& p) const;
    bool isEmpty() const { return empty_; }

    MPoint min() const { return min_; }
    MPoint max() const { return max_; }
    MPoint center() const;
    double width() const { return max_.x - min_.x; }
    double height() const { return max_.y - min_.y; }
    double depth() const { return max_.z - min_.z; }

  private:
    MPoint min_, max_;
    bool empty_ = true;
};
