#include "core/paint/LPattern.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>

#include "tests/core/paint/PlainPatterns.h"

using namespace VantrelSDK;

namespace {

using Pixels = std::vector<uint8_t>;

Pixels Noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    Pixels pixels(static_cast<size_t>(width) * height * 4);
    for (uint8_t& value : pixels) value = static_cast<uint8_t>(random());
    return pixels;
}

/// The mean of the pixels around a grid point, written the long way.
std::array<int, 4> MeanAt(const Pixels& pixels, int width, int height, int x, int y, int n) {
    const int hx = static_cast<int>(0.5 * width / n), hy = static_cast<int>(0.5 * height / n);
    const int cx = (width - 1) * x / (n - 1), cy = (height - 1) * y / (n - 1);
    std::array<long, 4> sums{};
    long count = 0;
    for (int row = cy - hy; row <= cy + hy; ++row)
        for (int column = cx - hx; column <= cx + hx; ++column) {
            if (row < 0 || row >= height || column < 0 || column >= width) continue;
            for (int c = 0; c < 4; ++c) sums[c] += pixels[(row * width + column) * 4 + c];
            ++count;
        }
    std::array<int, 4> mean;
    for (int c = 0; c < 4; ++c) mean[c] = static_cast<int>(sums[c] / count);
    return mean;
}

float WeightOf(const std::array<int, 4>& p) {
    return static_cast<float>((p[0] + p[1] + p[2]) * p[3]) / 195075;
}

/// A grid as it is told: written row by row with rows one shorter than they are, so that the last
/// sample of each gives way to the first of the next.
std::vector<std::array<int, 4>> GridOf(const Pixels& pixels, int width, int height, int n) {
    std::vector<std::array<int, 4>> grid(static_cast<size_t>(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x)
            grid[static_cast<size_t>(y * (n - 1) + x)] = MeanAt(pixels, width, height, x, y, n);
    return grid;
}

constexpr std::array<std::array<int, 2>, 5> kSizes{
    {{1, 1}, {60, 60}, {37, 201}, {512, 300}, {1600, 3}}};

}  // namespace

TEST(LPattern, LooksUpUnderABrushWhatTheGridHolds) {
    for (const auto& [width, height] : kSizes) {
        const Pixels pixels = Noise(width, height, 7);
        PlainPattern pattern;
        pattern.Take(width, height, pixels);
        const auto grid = GridOf(pixels, width, height, 60);
        std::mt19937 random(1);
        std::uniform_real_distribution<float> any(-1.2f, 1.2f);
        for (int i = 0; i < 2000; ++i) {
            const float u = any(random), v = any(random);
            if (std::abs(u) > 1 || std::abs(v) > 1) {
                EXPECT_EQ(pattern.GetWeight(u, v), 0);
                EXPECT_EQ(pattern.GetColor(u, v), LAColor::White);
                continue;
            }
            const auto& expected = grid[static_cast<size_t>(static_cast<int>(29.5f * (1 + v)) * 59 +
                                                            static_cast<int>(29.5f * (1 + u)))];
            ASSERT_NEAR(pattern.GetWeight(u, v), WeightOf(expected), 1e-6f) << width << " " << u;
            ASSERT_NEAR(pattern.GetColor(u, v).g, expected[1] / 255.0f, 1e-6f);
            ASSERT_NEAR(pattern.GetColor(u, v).a, expected[3] / 255.0f, 1e-6f);
        }
        EXPECT_NEAR(pattern.GetWeight(1, 1), WeightOf(grid[3540]), 1e-6f) << "the last entry";
        EXPECT_EQ(pattern.GetWeight(std::numeric_limits<float>::quiet_NaN(), 0), 0);
    }
}

TEST(LPattern, LooksUpOverASurfaceWhatTheLargeGridHolds) {
    constexpr int kWidth = 700, kHeight = 1900, kStride = 1479;
    const Pixels pixels = Noise(kWidth, kHeight, 3);
    PlainPattern pattern;
    pattern.Take(kWidth, kHeight, pixels);
    EXPECT_FALSE(pattern.HasProjection()) << "its memory is spent when it is looked at";
    const auto sample = [&](int i) {
        // The first of a row has taken the place of the last of the row before.
        return MeanAt(pixels, kWidth, kHeight, i % kStride, i / kStride, 1480);
    };
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(0.001f, 0.999f);
    for (int i = 0; i < 2000; ++i) {
        const float u = any(random), v = any(random);
        const auto expected =
            sample(static_cast<int>(1479 * v) * 1479 + static_cast<int>(1479 * (1 - u)));
        ASSERT_NEAR(pattern.GetProjWeight(u, v), WeightOf(expected), 1e-6f) << u << " " << v;
        ASSERT_NEAR(pattern.GetProjColor(u, v).b, expected[2] / 255.0f, 1e-6f);
    }
    EXPECT_NEAR(pattern.GetProjWeight(0, 0), WeightOf(sample(kStride)), 1e-6f)
        << "the first entry of the second row";
    // It repeats; and what is no place is somewhere.
    EXPECT_NEAR(pattern.GetProjWeight(0.3f, 5.6f), pattern.GetProjWeight(0.3f, 0.6f), 0.9f);
    for (const float x : {-3.5f, 7.25f, 1e30f, -1e30f, std::numeric_limits<float>::infinity(),
                          std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_LE(pattern.GetProjWeight(x, x), 1);
        EXPECT_LE(pattern.GetProjColor(0.5f, x).a, 1);
    }
}

TEST(LPattern, FloatsAreSampledAsBytesAre) {
    const Pixels bytes = Noise(90, 50, 5);
    std::vector<float> floats;
    for (const uint8_t value : bytes) floats.push_back((value + 0.25f) / 255);
    const PatternPixels one{90, 50, bytes.data()}, other{90, 50, nullptr, floats.data()};
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 60; ++x) {
            const auto a = one.At(x, y, 60, 60), b = other.At(x, y, 60, 60);
            ASSERT_NEAR(a.r, b.r, 1);
            ASSERT_NEAR(a.a, b.a, 1);
        }
    for (float& value : floats) value = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(other.At(3, 3, 60, 60).r, 0);
    for (float& value : floats) value = 1e30f;
    EXPECT_EQ(other.At(3, 3, 60, 60).g, 255);
}

TEST(LPattern, BrightnessServesAsAlphaWhenAsked) {
    struct AsAlpha : PlainPattern {
        bool on = false;
        bool refreshBuffers() override { return FillFromPixels(on), true; }
    } pattern;
    pattern.Draw(4, 4, [](int, int) { return std::array{30, 60, 120, 255}; });
    EXPECT_NEAR(pattern.GetWeight(0, 0), 70.0f / 255, 1e-6f) << "opaque: the mean of its channels";
    EXPECT_EQ(pattern.GetColor(0, 0), LAColor(30, 60, 120, 255) / 255);
    uint8_t r, g, b;
    pattern.getPreviewPixel(5, 5, r, g, b);
    EXPECT_TRUE(r == 30 && g == 60 && b == 120);
    const float before = pattern.GetProjColor(0.5f, 0.5f).a;
    pattern.on = true;
    EXPECT_TRUE(pattern.Refresh());
    EXPECT_EQ(pattern.GetColor(0, 0), LAColor(1, 1, 1, 70.0f / 255));
    EXPECT_EQ(before, 1);
    EXPECT_EQ(pattern.GetProjColor(0.5f, 0.5f), LAColor(1, 1, 1, 70.0f / 255));
    pattern.getPreviewPixel(5, 5, r, g, b);
    EXPECT_EQ(r, (255 * 70 + 50 * 185) / 255) << "white over a dark square";
}

TEST(LPatternCollection, OnePatternAtMostIsActive) {
    PlainPatterns patterns(nullptr);
    for (int i = 0; i < 3; ++i) patterns.AddNewPattern();
    EXPECT_EQ(patterns.GetActiveIndex(), -1);
    EXPECT_FALSE(patterns.SetAciveIndex(1)) << "it has no picture";
    for (const int i : {0, 2})
        static_cast<PlainPattern*>(patterns.GetPattern(i))->Draw(2, 2, [](int, int) {
            return std::array{255, 255, 255, 255};
        });
    EXPECT_TRUE(patterns.SetAciveIndex(0));
    EXPECT_TRUE(patterns.SetAciveIndex(2));
    EXPECT_EQ(patterns.GetActiveIndex(), 2);
    EXPECT_FALSE(patterns.GetPattern(0)->IsActive());
    for (const int wrong : {-2, 1, 3}) EXPECT_FALSE(patterns.SetAciveIndex(wrong));
    EXPECT_EQ(patterns.GetActiveIndex(), 2);
    EXPECT_FALSE(patterns.DeletePattern(3));
    EXPECT_TRUE(patterns.DeletePattern(1));
    EXPECT_EQ(patterns.GetActivePattern(), patterns.GetPattern(1));
    patterns.GetActivePattern()->freeBuffers();
    EXPECT_EQ(patterns.GetActivePattern(), nullptr);
    EXPECT_TRUE(patterns.SetAciveIndex(-1));
    patterns.GetPattern(0)->SetName("");
    EXPECT_STREQ(patterns.GetPattern(0)->GetName(), "none");
}
