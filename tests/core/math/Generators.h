#pragma once

#include <rapidcheck.h>

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

}  // namespace VantrelSDK
