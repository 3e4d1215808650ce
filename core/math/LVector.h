#pragma once

namespace VantrelSDK {

/// Four floats in a row, such as a homogeneous point. 16 bytes, also in a stream.
struct LVector {
    float x = 0, y = 0, z = 0, w = 0;

    static const LVector Zero;

    constexpr bool operator==(const LVector& o) const = default;
};

static_assert(sizeof(LVector) == 16);

inline constexpr LVector LVector::Zero{};

}  // namespace VantrelSDK
