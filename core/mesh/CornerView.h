#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace VantrelSDK {

/// The corners of an array of triangles, whatever else their records hold: the faces of a mesh name
/// vertices, those of a UV channel points of their own. Borrows the array.
class CornerView {
  public:
    /// A record starts with `int32_t v[3]`.
    template <class Triangle>
    CornerView(std::span<const Triangle> triangles)
        : CornerView(triangles.data(), triangles.size()) {}
    template <class Triangle>
    CornerView(const std::vector<Triangle>& triangles)
        : CornerView(triangles.data(), triangles.size()) {}
    template <class Triangle>
    CornerView(const Triangle* triangles, size_t count)
        : first_(reinterpret_cast<const char*>(triangles)),
          count_(count),
          stride_(sizeof(Triangle)) {
        static_assert(offsetof(Triangle, v) == 0 && sizeof(Triangle::v) == 3 * sizeof(int32_t));
    }

    size_t size() const { return count_; }
    /// The three corners of triangle f.
    const int32_t* operator[](size_t f) const {
        return reinterpret_cast<const int32_t*>(first_ + f * stride_);
    }

  private:
    const char* first_;
    size_t count_, stride_;
};

}  // namespace VantrelSDK
