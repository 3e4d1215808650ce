#pragma once

#include "core/math/LPoint3.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

/// A barycentric triple for each corner of a face: where the corners lie in some other triangle.
struct LFaceBarys {
    LPoint3 v[3];
};

static_assert(sizeof(LFaceBarys) == 36);

/// A face with a weight, for working lists that are sorted by it. The face is borrowed.
struct FaceWeight {
    const LFace* face = nullptr;
    float weight = 0;

    bool operator<(const FaceWeight& o) const { return weight < o.weight; }
};

}  // namespace VantrelSDK
