#pragma once

#include <immintrin.h>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// Vectors in the registers of the processor, x, y, z in the first three lanes. Each operation
/// gives the bits that LPoint3 gives.
using Float4 = __m128;

/// Reads 16 bytes: four more than the point has. An array that is read so has one point more.
inline Float4 LoadPoint(const LPoint3& p) {
    return _mm_loadu_ps(&p.x);
}

inline void StorePoint(LPoint3& p, Float4 v) {
    _mm_storel_pi(reinterpret_cast<__m64*>(&p.x), v);
    _mm_store_ss(&p.z, _mm_movehl_ps(v, v));
}

/// a ^ b; the last lane is anything.
inline Float4 Cross(Float4 a, Float4 b) {
    constexpr int yzx = _MM_SHUFFLE(3, 0, 2, 1), zxy = _MM_SHUFFLE(3, 1, 0, 2);
    return _mm_sub_ps(_mm_mul_ps(_mm_shuffle_ps(a, a, yzx), _mm_shuffle_ps(b, b, zxy)),
                      _mm_mul_ps(_mm_shuffle_ps(a, a, zxy), _mm_shuffle_ps(b, b, yzx)));
}

/// Scales four vectors to unit length, as LPoint3::Normalize does, at the price of one: what
/// normalising waits for is the processor's divider.
inline void NormalizeFour(Float4 (&v)[4]) {
    Float4 x = v[0], y = v[1], z = v[2], w = v[3];
    _MM_TRANSPOSE4_PS(x, y, z, w);
    const Float4 len =
        _mm_sqrt_ps(_mm_add_ps(_mm_add_ps(_mm_mul_ps(x, x), _mm_mul_ps(y, y)), _mm_mul_ps(z, z)));
    const Float4 one = _mm_set1_ps(1), isZero = _mm_cmpeq_ps(len, _mm_setzero_ps());
    const Float4 scale =
        _mm_or_ps(_mm_and_ps(isZero, one), _mm_andnot_ps(isZero, _mm_div_ps(one, len)));
    v[0] = _mm_mul_ps(v[0], _mm_shuffle_ps(scale, scale, _MM_SHUFFLE(0, 0, 0, 0)));
    v[1] = _mm_mul_ps(v[1], _mm_shuffle_ps(scale, scale, _MM_SHUFFLE(1, 1, 1, 1)));
    v[2] = _mm_mul_ps(v[2], _mm_shuffle_ps(scale, scale, _MM_SHUFFLE(2, 2, 2, 2)));
    v[3] = _mm_mul_ps(v[3], _mm_shuffle_ps(scale, scale, _MM_SHUFFLE(3, 3, 3, 3)));
}

}  // namespace VantrelSDK
