#include "core/math/LRandom.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <sstream>
#include <vector>

using namespace VantrelSDK;

namespace {

uint32_t Word(ILRandGenerator& g) {
    return static_cast<uint32_t>(g.RandDouble(0, 1) * 0x1p32);
}

/// The standard library's generator in the state that the published init_by_array gives.
std::mt19937 SeededByArray(const std::vector<uint32_t>& key) {
    std::vector<uint32_t> mt(624);
    mt[0] = 19650218;
    for (uint32_t n = 1; n < 624; ++n) mt[n] = 1812433253u * (mt[n - 1] ^ (mt[n - 1] >> 30)) + n;
    size_t i = 1, j = 0;
    for (size_t k = std::max<size_t>(624, key.size()); k; --k) {
        mt[i] = (mt[i] ^ ((mt[i - 1] ^ (mt[i - 1] >> 30)) * 1664525u)) + key[j] + uint32_t(j);
        if (++i >= 624) mt[0] = mt[623], i = 1;
        if (++j >= key.size()) j = 0;
    }
    for (int k = 623; k; --k) {
        mt[i] = (mt[i] ^ ((mt[i - 1] ^ (mt[i - 1] >> 30)) * 1566083941u)) - uint32_t(i);
        if (++i >= 624) mt[0] = mt[623], i = 1;
    }
    mt[0] = 0x80000000u;
    std::stringstream state;
    for (const uint32_t word : mt) state << word << ' ';
    state << 624;
    std::mt19937 engine;
    state >> engine;
    return engine;
}

}  // namespace

TEST(LRandomMersenne, IsTheStandardGeneratorAfterItsDiscards) {
    for (const unsigned seed : {0u, 1u, 5489u, 4294967295u}) {
        LRandomMersenne mine;
        mine.SetSeed(seed);
        std::mt19937 standard(seed);
        standard.discard(37);
        for (int i = 0; i < 3000; ++i) ASSERT_EQ(Word(mine), standard()) << seed << " " << i;
    }
}

TEST(LRandomMersenne, SeedsByArray) {
    // The published first number for the published key holds the oracle itself to account.
    EXPECT_EQ(SeededByArray({0x123, 0x234, 0x345, 0x456})(), 1067595299u);

    for (const size_t length : {1, 4, 623, 625, 1300}) {
        std::vector<uint32_t> key(length);
        std::mt19937 words(7);
        for (uint32_t& word : key) word = words();
        std::mt19937 standard = SeededByArray(key);
        standard.discard(625);
        LRandomMersenne mine;
        mine.SetSeedByArray(key);
        for (int i = 0; i < 1000; ++i) ASSERT_EQ(Word(mine), standard()) << length << " " << i;
    }
    LRandomMersenne none;
    none.SetSeedByArray({});
    std::mt19937 zero = SeededByArray({0});
    zero.discard(625);
    EXPECT_EQ(Word(none), zero());
}

// The recurrence written with 128-bit sums over a growing list instead of a shifting window.
TEST(LRandomMother, FollowsItsRecurrence) {
    for (const unsigned seed : {1u, 0u, 123456789u}) {
        std::vector<uint32_t> x(5);
        uint32_t s = seed;
        for (uint32_t& word : x) word = s = uint32_t((s * 29943829ull - 1) & 0xffffffff);
        unsigned __int128 carry = x[4];
        std::vector<uint32_t> draws = {x[3], x[2], x[1], x[0]};
        LRandomMother mine;
        if (seed != 1) mine.SetSeed(seed);
        for (int i = 0; i < 500; ++i) {
            const size_t n = draws.size();
            const unsigned __int128 sum = carry + (unsigned __int128)(2111111111) * draws[n - 4] +
                                          (unsigned __int128)(1492) * draws[n - 3] +
                                          (unsigned __int128)(1776) * draws[n - 2] +
                                          (unsigned __int128)(5115) * draws[n - 1];
            draws.push_back(uint32_t(sum));
            carry = sum >> 32;
            if (i < 19) continue;
            ASSERT_EQ(Word(mine), draws.back()) << seed << " " << i;
        }
    }
}

TEST(Random, IntegersStayInRangeAndReachItsEnds) {
    LRandomMother mother;
    LRandomMersenne mersenne;
    for (ILRandGenerator* g :
         {static_cast<ILRandGenerator*>(&mother), static_cast<ILRandGenerator*>(&mersenne)}) {
        EXPECT_EQ(g->RandInt(5, 4), INT_MIN);
        int count[7] = {};
        for (int i = 0; i < 7000; ++i) {
            const int n = g->RandInt(-3, 3);
            ASSERT_TRUE(n >= -3 && n <= 3);
            ++count[n + 3];
        }
        for (const int c : count) EXPECT_NEAR(c, 1000, 150);
        for (int i = 0; i < 100; ++i) {
            const double d = g->RandDouble(-2, 5);
            EXPECT_TRUE(d >= -2 && d < 5);
        }
    }
}

TEST(Random, EqualBoundsDrawNothing) {
    LRandomMother a, b;
    EXPECT_EQ(a.RandInt(4, 4), 4);
    EXPECT_EQ(Word(a), Word(b));
}

TEST(LRandomMersenne, UnbiasedIntegersCoverEveryRange) {
    LRandomMersenne g;
    EXPECT_EQ(g.RandIntX(5, 4), INT_MIN);
    EXPECT_EQ(g.RandIntX(4, 4), 4);
    int low = 0, middle = 0;
    const int third = INT_MAX / 3 * 2;  // 3 * 2^30: a plain product would favour a third of these
    for (int i = 0; i < 3000; ++i) {
        const int n = g.RandIntX(-third / 2, third);
        low += n < 0;
        middle += n >= 0 && n < third / 2;
    }
    EXPECT_NEAR(low, 1000, 100);
    EXPECT_NEAR(middle, 1000, 100);
    bool negative = false, positive = false;
    for (int i = 0; i < 50; ++i) {
        const int n = g.RandIntX(INT_MIN, INT_MAX);
        (n < 0 ? negative : positive) = true;
    }
    EXPECT_TRUE(negative && positive);
}
