#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

/// The least that a brush step must do for n vertices: contiguous positions and normals, a
/// 40-sample falloff with linear interpolation, one offset along the normal. Nanoseconds a vertex,
/// the median of many rounds; steps are quoted as multiples of it, measured in the same run.
inline double FloorPerVertex(int n) {
    std::vector<float> p(3 * n), q(3 * n), curve(41);
    for (int i = 0; i < n; ++i) {
        const float a = 2.39996f * i, r = std::sqrt((i + 0.5f) / n) * 0.999f;
        p[3 * i] = r * std::cos(a), p[3 * i + 1] = r * std::sin(a);
        q[3 * i] = 0.1f, q[3 * i + 2] = 0.99f;
    }
    for (int i = 0; i <= 40; ++i) curve[i] = 1 - i / 40.0f;
    std::vector<double> times;
    for (int k = 0; k < 400; ++k) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i) {
            const float x = p[3 * i], y = p[3 * i + 1], z = p[3 * i + 2],
                        d2 = x * x + y * y + z * z;
            if (d2 > 1) continue;
            const float d = std::sqrt(d2) * 40;
            const int j = std::min(39, static_cast<int>(d));
            const float w = (curve[j] + (curve[j + 1] - curve[j]) * (d - j)) * 1e-6f;
            for (int c = 0; c < 3; ++c) p[3 * i + c] += w * q[3 * i + c];
        }
        times.push_back(
            std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start)
                .count() /
            n);
    }
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    // The sum keeps the loop from being left out.
    return times[times.size() / 2] + (p[0] > 1e9f ? 1 : 0);
}
