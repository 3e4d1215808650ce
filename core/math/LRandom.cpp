#include "core/math/LRandom.h"

#include <algorithm>
#include <climits>

namespace VantrelSDK {

double LRandom32::RandDouble(float min, float max) {
    return min + (double(max) - min) * Draw() * 0x1p-32;
}

int LRandom32::RandInt(int min, int max) {
    if (max < min) return INT_MIN;
    if (max == min) return min;
    const double range = double(max) - min + 1;
    const auto offset = static_cast<int64_t>(RandDouble(0, 1) * range);
    return static_cast<int>(std::min<int64_t>(min + offset, max));
}

void LRandomMother::SetSeed(unsigned seed) {
    for (uint32_t& word : words_) word = seed = seed * 29943829u - 1;
    for (int i = 0; i < 19; ++i) LRandomMother::Draw();
}

uint32_t LRandomMother::Draw() {
    const uint64_t sum = 2111111111ull * words_[3] + 1492ull * words_[2] + 1776ull * words_[1] +
                         5115ull * words_[0] + words_[4];
    words_ = {static_cast<uint32_t>(sum), words_[0], words_[1], words_[2],
              static_cast<uint32_t>(sum >> 32)};
    return words_[0];
}

void LRandomMersenne::Init(uint32_t seed) {
    state_[0] = seed;
    for (uint32_t i = 1; i < kWords; ++i)
        state_[i] = 1812433253u * (state_[i - 1] ^ state_[i - 1] >> 30) + i;
    next_ = kWords;
}

void LRandomMersenne::Discard(int draws) {
    while (draws-- > 0) LRandomMersenne::Draw();
}

void LRandomMersenne::SetSeed(unsigned seed) {
    Init(seed);
    Discard(37);
}

void LRandomMersenne::SetSeedByArray(std::span<const unsigned> seeds) {
    static constexpr unsigned kNone[1] = {0};
    if (seeds.empty()) seeds = kNone;
    Init(19650218u);
    uint32_t i = 1;
    const auto advance = [&] {
        if (++i == kWords) state_[0] = state_[kWords - 1], i = 1;
    };
    const auto mixed = [&](uint32_t factor) {
        return state_[i] ^ (state_[i - 1] ^ state_[i - 1] >> 30) * factor;
    };
    for (size_t k = 0; k < std::max<size_t>(kWords, seeds.size()); ++k) {
        const size_t j = k % seeds.size();
        state_[i] = mixed(1664525u) + seeds[j] + static_cast<uint32_t>(j);
        advance();
    }
    for (int k = 0; k < kWords - 1; ++k) {
        state_[i] = mixed(1566083941u) - i;
        advance();
    }
    state_[0] = 0x80000000u;
    Discard(625);
}

void LRandomMersenne::Regenerate() {
    for (int i = 0; i < kWords; ++i) {
        const uint32_t y = (state_[i] & 0x80000000u) | (state_[(i + 1) % kWords] & 0x7fffffffu);
        state_[i] = state_[(i + 397) % kWords] ^ y >> 1 ^ (y & 1 ? 0x9908b0dfu : 0);
    }
    next_ = 0;
}

uint32_t LRandomMersenne::Draw() {
    if (next_ == kWords) Regenerate();
    uint32_t y = state_[next_++];
    y ^= y >> 11;
    y ^= y << 7 & 0x9d2c5680u;
    y ^= y << 15 & 0xefc60000u;
    return y ^ y >> 18;
}

int LRandomMersenne::RandIntX(int min, int max) {
    if (max < min) return INT_MIN;
    if (max == min) return min;
    const uint64_t range = static_cast<uint64_t>(int64_t{max} - min) + 1;
    if (range != lastRange_) {
        lastRange_ = range;
        lastLimit_ = static_cast<uint32_t>((uint64_t{1} << 32) / range * range - 1);
    }
    // The high word is the number; low words past the last whole multiple of the range are the
    // surplus that would make some numbers more likely.
    uint64_t product;
    do product = Draw() * range;
    while (static_cast<uint32_t>(product) > lastLimit_);
    return static_cast<int>(int64_t{min} + static_cast<int64_t>(product >> 32));
}

}  // namespace VantrelSDK
