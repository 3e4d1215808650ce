#pragma once

#include <rapidcheck.h>

#include <bit>
#include <cmath>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A number within -1 to 1 from the whole range, whatever the size of the test case.
inline float Unit() {
    return static_cast<float>(*rc::gen::resize(rc::kNominalSize, rc::gen::inRange(-10000, 10001))) /
           10000.0f;
}

/// A point of the cube from -1 to 1.
inline LPoint3 UnitPoint() {
    const float x = Unit(), y = Unit(), z = Unit();
    return {x, y, z};
}

/// Any finite float: all bit patterns alike, so that subnormals and both zeros come up.
inline rc::Gen<float> AnyFloat() {
    const auto anyBits = rc::gen::map(rc::gen::arbitrary<uint32_t>(), [](uint32_t bits) {
        const float f = std::bit_cast<float>(bits);
        return std::isfinite(f) ? f : 0.0f;
    });
    // The shortest text of the last one lies so near to the middle of two floats that it reads as
    // the other one by way of a double.
    return rc::gen::oneOf(
        anyBits, rc::gen::element(0.0f, -0.0f, 0.1f, 1e-45f, -3.4028235e38f, 7.038531e-26f));
}

}  // namespace VantrelSDK
