#include "host/gl/ScreenRect.h"

#include <cfloat>
#include <cmath>

namespace VantrelSDK {

ScreenRect ScreenProjection::Of(const LPoint3& min, const LPoint3& max) const {
    double low[2] = {DBL_MAX, DBL_MAX}, high[2] = {-DBL_MAX, -DBL_MAX};
    const double size[2] = {static_cast<double>(width), static_cast<double>(height)};
    for (int corner = 0; corner < 8; ++corner) {
        const double p[3] = {corner & 1 ? max.x : min.x, corner & 2 ? max.y : min.y,
                             corner & 4 ? max.z : min.z};
        const auto row = [&](unsigned c) {
            return p[0] * toClip[0][c] + p[1] * toClip[1][c] + p[2] * toClip[2][c] + toClip[3][c];
        };
        const double w = row(3);
        if (!(w > 0)) return {0, 0, width, height};
        for (unsigned i = 0; i < 2; ++i) {
            const double at = (row(i) / w + 1) / 2 * size[i];
            low[i] = std::min(low[i], at);
            high[i] = std::max(high[i], at);
        }
    }
    const auto pixel = [](double at, double most) {
        return static_cast<int>(std::clamp(at, 0., most));
    };
    // A pixel more: lines are a pixel wide.
    return {pixel(std::floor(low[0]) - 1, size[0]), pixel(std::floor(low[1]) - 1, size[1]),
            pixel(std::ceil(high[0]) + 1, size[0]), pixel(std::ceil(high[1]) + 1, size[1])};
}

}  // namespace VantrelSDK
