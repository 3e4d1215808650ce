#include "core/mesh/LQuad.h"

namespace VantrelSDK {

void LQuad::Split(LFace& a, LFace& b) const {
    constexpr uint8_t kGluingEdge2 = 1 << 5;
    const auto half = [this](LFace& face, int first) {
        for (int k = 0; k < 3; ++k) face.v[k] = v[(first + k) % 4];
        face.flags = static_cast<uint8_t>(kGluingEdge2 | int{IsEdgeVisible(first)} |
                                          int{IsEdgeVisible((first + 1) % 4)} << 1);
    };
    const int first = flags & kDiagonal02 ? 0 : 1;
    half(a, first);
    half(b, first + 2);
}

}  // namespace VantrelSDK
