#pragma once

#include <cstdint>

#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// A quad: four vertex numbers and the triangles that it came from.
///
/// Edge e runs from corner e to corner (e + 1) % 4. Flag bit 1 + e says that edge e is visible, bit
/// 5 that the diagonal runs from corner 0 to corner 2, else from corner 1 to corner 3. 28 bytes,
/// also in a stream.
struct LQuad {
    static constexpr uint8_t kDiagonal02 = 1 << 5;

    int32_t v[4] = {0, 0, 0, 0};
    uint8_t flags = 0;
    uint8_t padding[3] = {0, 0, 0};
    /// The source triangles, both the same for a quad of a single triangle; -1 when none.
    int32_t faces[2] = {-1, -1};

    constexpr bool IsEdgeVisible(int e) const { return flags >> (1 + e) & 1; }

    /// The two triangles, each with the diagonal as its edge 2, a gluing edge; their edges 0 and 1
    /// are edges of the quad and as visible as those. Their `id` stays as it is.
    void Split(LFace& a, LFace& b) const;
};

static_assert(sizeof(LQuad) == 28);

}  // namespace VantrelSDK
