#pragma once

#include <cstdint>

namespace VantrelSDK {

/// A triangle: three vertex numbers, its own number and what its edges are.
///
/// Edge e runs from corner e to corner (e + 1) % 3. Flag bits 0 to 2 say that edge 0, 1, 2 is
/// visible: an edge of the source polygon, not an inner diagonal of its triangulation. Bits 3 to 5
/// say that edge 0, 1, 2 is gluing: it joins triangles of one polygon. 20 bytes, also in a stream.
struct LFace {
    int32_t v[3] = {0, 0, 0};
    int32_t id = -1;
    uint8_t flags = 7;
    uint8_t padding[3] = {0, 0, 0};

    static const LFace Zero;

    constexpr bool IsEdgeVisible(int e) const { return flags >> e & 1; }
    constexpr bool IsEdgeGluing(int e) const { return flags >> (3 + e) & 1; }
    /// Edge e is hidden and the two others are visible.
    constexpr bool IsOnlyHiddenEdge(int e) const { return (flags & 7) == (7 & ~(1 << e)); }

    /// The corner that holds vertex `vert`, or -1.
    constexpr int CornerOf(int vert) const {
        return v[0] == vert ? 0 : v[1] == vert ? 1 : v[2] == vert ? 2 : -1;
    }
};

static_assert(sizeof(LFace) == 20);

inline constexpr LFace LFace::Zero{};
inline constexpr LFace ZeroFace{};

}  // namespace VantrelSDK
