#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

/// Parts of an iteration, timed apart.
namespace VantrelSDK::bench {

using Clock = std::chrono::steady_clock;

inline double Median(std::vector<double>& values) {
    if (values.empty()) return 0;
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

/// Runs it; microseconds into `times`.
inline void Timed(std::vector<double>& times, const auto& run) {
    const auto start = Clock::now();
    run();
    times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
}

}  // namespace VantrelSDK::bench
