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
    uint32_t mt[624] = {19650218};
    const auto mix = [&](uint32_t n, uint32_t f) { return (mt[n - 1] ^ (mt[n - 1] >> 30)) * f; };
    for (uint32_t n = 1; n < 624; ++n) mt[n] = mix(n, 1812433253u) + n;
    uint32_t i = 1, j = 0;
    const auto next = [&] {
        if (++i == 624) mt[0] = mt[623], i = 1;
    };
    for (size_t k = std::max<size_t>(624, key.size()); k; --k, next(), j = (j + 1) % key.size())
        mt[i] = (mt[i] ^ mix(i, 1664525u)) + key[j] + j;
    for (int k = 623; k; --k, next()) mt[i] = (mt[i] ^ mix(i, 1566083941u)) - i;
    mt[0] = 0x80000000u;
    std::stringstream state;
    for (const uint32_t word : mt) state << word << ' ';
    std::mt19937 engine;
    state << 624;
    state >> engine;
    return engine;
}

}  // namespace

TEST(LRandomMersenne, IsTheStandardGeneratorAfterItsDiscards) {
    // The published first number for the published key holds the oracle itself to account.
    EXPECT_EQ(SeededByArray({0x123, 0x234, 0x345, 0x456})(), 1067595299u);

    const auto expectSame = [](LRandomMersenne& mine, std::mt19937 standard, int discarded) {
        standard.discard(discarded);
        for (int i = 0; i < 2000; ++i) ASSERT_EQ(Word(mine), standard()) << discarded << " " << i;
    };
    LRandomMersenne mine;
    for (const unsigned seed : {0u, 1u, 4294967295u}) {
        mine.SetSeed(seed);
        expectSame(mine, std::mt19937(seed), 37);
    }
    for (const size_t length : {1, 4, 623, 1300}) {
        std::vector<uint32_t> key(length);
        for (uint32_t& word : key) word = Word(mine);
        mine.SetSeedByArray(key);
        expectSame(mine, SeededByArray(key), 625);
    }
    mine.SetSeedByArray({});
    expectSame(mine, SeededByArray({0}), 625);
}

TEST(Random, NumbersStayInRangeReachItsEndsAndFavourNone) {
    LRandomMother g, untouched;
    LRandomMersenne unbiased;
    for (const int n : {g.RandInt(5, 4), unbiased.RandIntX(5, 4)}) EXPECT_EQ(n, INT_MIN);
    for (const int n : {g.RandInt(4, 4), unbiased.RandIntX(4, 4)}) EXPECT_EQ(n, 4);
    EXPECT_EQ(Word(g), Word(untouched));  // neither has drawn
    int count[7] = {};
    for (int i = 0; i < 7000; ++i) {
        const int n = g.RandInt(-3, 3);
        ASSERT_TRUE(n >= -3 && n <= 3);
        ++count[n + 3];
        const double d = g.RandDouble(-2, 5);
        ASSERT_TRUE(d >= -2 && d < 5);
    }
    for (const int c : count) EXPECT_NEAR(c, 1000, 150);
    // Of 3 * 2^30 numbers a plain product of a draw would make every third twice as likely.
    const int low = -(3 << 29);
    int firsts = 0, negative = 0;
    for (int i = 0; i < 9000; ++i) {
        firsts += (int64_t{unbiased.RandIntX(low, -(low + 1))} - low) % 3 == 0;
        negative += unbiased.RandIntX(INT_MIN, INT_MAX) < 0;
    }
    EXPECT_NEAR(firsts, 3000, 200);
    EXPECT_NEAR(negative, 4500, 250);
}
