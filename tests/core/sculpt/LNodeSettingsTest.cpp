#include "core/sculpt/LNodeSettings.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace VantrelSDK;

namespace {

using Numbers = std::vector<double>;

TEST(LNodeSettings, StartAsTheAttributesDo) {
    const LNodeSettings s;
    EXPECT_EQ(s.symmetry, 4);
    EXPECT_EQ(s.pushPullMode, 2);
    EXPECT_FLOAT_EQ(s.toolSize[7], 0.1f);
    EXPECT_EQ(s.paintPressMult[19], 1);
    EXPECT_TRUE(s.useSSAO[2] && !s.useShadow[2]);
    EXPECT_EQ(s.bakeTexSize, (SettingInt2{512, 512}));
    EXPECT_EQ(s.vertexPaintColor, (SettingFloat3{1, 1, 1}));
    EXPECT_EQ(s.shadowAlt, -142);
    EXPECT_EQ(s.symmetrySnapRadius, 10);
    EXPECT_TRUE(s.useRamp && s.useRamp2 && !s.useSelected);
    EXPECT_EQ(s.falloff, (Ramp{{0, 1}, {1, 0}}));
}

/// A value of the type of `like` that differs from it and that every setting of the type takes.
SettingValue Other(const SettingValue& like) {
    if (const bool* b = std::get_if<bool>(&like)) return !*b;
    if (const double* d = std::get_if<double>(&like)) return *d == 1 ? 2.0 : 1.0;
    Numbers numbers = std::get<Numbers>(like);
    for (double& n : numbers) n = n == 1 ? 2 : 1;
    return numbers;
}

/// All that can be set: names, those of the arrays once for each index.
std::vector<std::pair<std::string_view, std::optional<int>>> Places() {
    std::vector<std::pair<std::string_view, std::optional<int>>> places;
    for (const std::string_view name : LNodeSettings::Names()) {
        if (LNodeSettings().Get(name)) places.emplace_back(name, std::nullopt);
        for (int i = 0; LNodeSettings().Get(name, i); ++i) places.emplace_back(name, i);
    }
    return places;
}

TEST(LNodeSettings, SetByNameReachesOneValueAndNoOther) {
    const auto places = Places();
    EXPECT_EQ(places.size(), LNodeSettings::Names().size() - 6 + 4 * 20 + 2 * 3);
    for (const auto& [name, index] : places) {
        LNodeSettings settings;
        const SettingValue value = Other(*settings.Get(name, index));
        ASSERT_TRUE(settings.Set(name, value, index)) << name;
        for (const auto& [otherName, otherIndex] : places) {
            const bool same = otherName == name && otherIndex == index;
            EXPECT_EQ(*settings.Get(otherName, otherIndex),
                      same ? value : *LNodeSettings().Get(otherName, otherIndex))
                << name << " / " << otherName;
        }
    }
}

TEST(LNodeSettings, SetByNameWritesTheFieldOfThatName) {
    LNodeSettings s;
    EXPECT_TRUE(s.Set("symmetry", 1.0));
    EXPECT_TRUE(s.Set("accumulate", true));
    EXPECT_TRUE(s.Set("toolSize", 0.5, 3));
    EXPECT_TRUE(s.Set("projectiveTiling", Numbers{2, 3}));
    EXPECT_TRUE(s.Set("vertexPaintColor", Numbers{0, 0.5, 1}));
    EXPECT_TRUE(s.Set("falloffMin2", 0.25));
    EXPECT_EQ(s.symmetry, 1);
    EXPECT_TRUE(s.accumulate);
    EXPECT_EQ(s.toolSize[3], 0.5f);
    EXPECT_EQ(s.projectiveTiling, (SettingInt2{2, 3}));
    EXPECT_EQ(s.vertexPaintColor, (SettingFloat3{0, 0.5f, 1}));
    EXPECT_EQ(s.falloffMin2, 0.25f);
}

TEST(LNodeSettings, RefusalsSayWhatWasExpectedAndChangeNothing) {
    struct Case {
        const char* name;
        SettingValue value;
        std::optional<int> index;
        const char* message;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const auto none = std::nullopt;
    const Case cases[] = {
        {"colour", 1.0, none, "there is no setting \"colour\""},
        {"falloff", 1.0, none, "there is no setting \"falloff\""},
        {"accumulate", 1.0, none, "the setting \"accumulate\" takes true or false"},
        {"symmetry", true, none, "the setting \"symmetry\" takes a whole number from 1 to 4"},
        {"symmetry", 2.5, none, "the setting \"symmetry\" takes a whole number from 1 to 4"},
        {"symmetry", 0.0, none, "the setting \"symmetry\" takes a whole number from 1 to 4"},
        {"symmetry", 5.0, none, "the setting \"symmetry\" takes a whole number from 1 to 4"},
        {"symmetry", 4.0, 0, "the setting \"symmetry\" takes no index"},
        {"pushPullMode", 3.0, none,
         "the setting \"pushPullMode\" takes a whole number from 0 to 2"},
        {"sculptMode", -1.0, none, "the setting \"sculptMode\" takes a whole number from 0 to 19"},
        {"brushSmoothIterations", 1001.0, none,
         "the setting \"brushSmoothIterations\" takes a whole number from 0 to 1000"},
        {"objSmIt", -1.0, none, "the setting \"objSmIt\" takes a whole number from 0 to 1000"},
        {"patternMode", 1e10, none,
         "the setting \"patternMode\" takes a whole number in the range of an int"},
        {"falloffMin", inf, none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"falloffMin", -1e39, none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"falloffMin", std::nan(""), none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"toolSize", 1.0, none, "the setting \"toolSize\" needs an index from 0 to 19"},
        {"toolSize", 1.0, 20, "the setting \"toolSize\" needs an index from 0 to 19"},
        {"useShadow", true, -1, "the setting \"useShadow\" needs an index from 0 to 2"},
        {"screenOffset", 1.0, none,
         "the setting \"screenOffset\" takes an array of 2 numbers, each a number in the range of "
         "a "
         "float"},
        {"screenOffset", Numbers{1, 2, 3}, none,
         "the setting \"screenOffset\" takes an array of 2 numbers, each a number in the range of "
         "a "
         "float"},
        {"bakeTexSize", Numbers{1, 2.5}, none,
         "the setting \"bakeTexSize\" takes an array of 2 numbers, each a whole number in the "
         "range "
         "of an int"},
    };
    for (const Case& c : cases) {
        LNodeSettings settings;
        EXPECT_EQ(settings.Set(c.name, c.value, c.index).message, c.message);
        for (const auto& [name, index] : Places()) {
            EXPECT_EQ(settings.Get(name, index), LNodeSettings().Get(name, index)) << c.message;
        }
    }
}

TEST(RampValue, HoldsItsEndsAndSteps) {
    const Ramp ramp = {{0.25f, 2}, {0.5f, 4}, {0.5f, 8}, {0.75f, 0}};
    EXPECT_EQ(RampValue(ramp, -1), 2);
    EXPECT_EQ(RampValue(ramp, 0.375f), 3);
    EXPECT_EQ(RampValue(ramp, 0.5f), 8);
    EXPECT_EQ(RampValue(ramp, 0.625f), 4);
    EXPECT_EQ(RampValue(ramp, 9), 0);
    EXPECT_EQ(RampValue({{0.5f, 3}}, 0.1f), 3);
    EXPECT_EQ(RampValue({}, 0.5f), 0);
}

RC_GTEST_PROP(RampValue, StaysBetweenItsNeighbours, ()) {
    const int n = *rc::gen::inRange(1, 8);
    const auto unit = rc::gen::map(rc::gen::inRange(0, 65), [](int i) { return i / 64.0f; });
    auto positions = *rc::gen::container<std::vector<float>>(n, unit);
    std::sort(positions.begin(), positions.end());
    Ramp ramp;
    for (const float position : positions) ramp.push_back({position, *unit});
    const float t = *unit;
    float least = 2, most = -1;
    for (int i = 0; i < n; ++i) {
        const bool near =
            (i + 1 == n || ramp[i + 1].position >= t) && (i == 0 || ramp[i - 1].position <= t);
        if (near) least = std::min(least, ramp[i].value), most = std::max(most, ramp[i].value);
    }
    RC_ASSERT(RampValue(ramp, t) >= least && RampValue(ramp, t) <= most);
}

}  // namespace
