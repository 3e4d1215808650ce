#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

/// The least that a brush step must do for n vertices: contiguous positions and normals, a
/// 40-sample falloff with linear interpolation, one offset along the normal.
///
/// Machines change their speed from one second to the next, so time it again and again between the
/// steps that are told in multiples of it.
class FloorTimer {
  public:
    explicit FloorTimer(int n) : n_(n), p_(3 * n), q_(3 * n), curve_(41) {
        for (int i = 0; i < n; ++i) {
            const float a = 2.39996f * i, r = std::sqrt((i + 0.5f) / n) * 0.999f;
            p_[3 * i] = r * std::cos(a), p_[3 * i + 1] = r * std::sin(a);
            q_[3 * i] = 0.1f, q_[3 * i + 2] = 0.99f;
        }
        for (int i = 0; i <= 40; ++i) curve_[i] = 1 - i / 40.0f;
    }

    /// Microseconds of one round. A round before it, not counted, brings the arrays into the
    /// caches.
    double Time() {
        Round();
        const auto start = std::chrono::steady_clock::now();
        Round();
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
            .count();
    }

  private:
    [[gnu::noinline]] void Round() {
        for (int i = 0; i < n_; ++i) {
            const float x = p_[3 * i], y = p_[3 * i + 1], z = p_[3 * i + 2],
                        d2 = x * x + y * y + z * z;
            if (d2 > 1) continue;
            const float d = std::sqrt(d2) * 40;
            const int j = std::min(39, static_cast<int>(d));
            const float w = (curve_[j] + (curve_[j + 1] - curve_[j]) * (d - j)) * 1e-6f;
            for (int c = 0; c < 3; ++c) p_[3 * i + c] += w * q_[3 * i + c];
        }
    }

    int n_;
    std::vector<float> p_, q_, curve_;
};
