#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace VantrelSDK {

/// Tells which vertices follow each other around a polygon, and so which edges of its triangles are
/// edges of its own. A vertex that the ring names twice counts where it stands first.
class PolygonRing {
  public:
    explicit PolygonRing(int nverts) : place_(nverts, -1) {}

    /// The vertices around the next polygon; borrowed until the next call.
    void Set(std::span<const int> corners) {
        for (const int v : corners_) place_[v] = -1;
        corners_ = corners;
        for (size_t i = corners.size(); i-- > 0;) place_[corners[i]] = static_cast<int>(i);
    }
    bool Follow(int p, int q) const {
        if (place_[p] < 0) return false;
        const size_t n = corners_.size(), i = place_[p];
        return corners_[(i + 1) % n] == q || corners_[(i + n - 1) % n] == q;
    }
    /// The place of a vertex that it has.
    int PlaceOf(int vertex) const { return place_[vertex]; }
    /// LFace's flags of a triangle of it: an edge is visible or gluing.
    uint8_t EdgeFlags(const int32_t (&v)[3]) const {
        int flags = 0;
        for (int e = 0; e < 3; ++e) flags |= Follow(v[e], v[(e + 1) % 3]) ? 1 << e : 8 << e;
        return static_cast<uint8_t>(flags);
    }

  private:
    std::vector<int> place_;
    std::span<const int> corners_;
};

}  // namespace VantrelSDK
