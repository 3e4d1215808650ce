#include "core/sculpt/LNodeSettings.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace VantrelSDK;

namespace {

using Numbers = std::vector<double>;

/// All that can be set: names, those of the arrays once for each index.
std::vector<std::pair<std::string_view, std::optional<int>>> Places() {
    std::vector<std::pair<std::string_view, std::optional<int>>> places;
    for (const std::string_view name : LNodeSettings::Names()) {
        if (LNodeSettings().Get(name)) places.emplace_back(name, std::nullopt);
        for (int i = 0; LNodeSettings().Get(name, i); ++i) places.emplace_back(name, i);
    }
    return places;
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
        {"symmetry", 4.0, 0, "the setting \"symmetry\" takes no index"},
        {"patternMode", 1e10, none,
         "the setting \"patternMode\" takes a whole number in the range of an int"},
        {"falloffMin", inf, none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"falloffMin", -1e39, none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"falloffMin", std::nan(""), none,
         "the setting \"falloffMin\" takes a number in the range of a float"},
        {"toolSize", 1.0, none, "the setting \"toolSize\" needs an index from 0 to 19"},
        {"useShadow", true, -1, "the setting \"useShadow\" needs an index from 0 to 2"},
        {"screenOffset", Numbers{1, 2, 3}, none,
         "the setting \"screenOffset\" takes an array of 2 numbers, each a number in the range of "
         "a float"},
        {"bakeTexSize", Numbers{1, 2.5}, none,
         "the setting \"bakeTexSize\" takes an array of 2 numbers, each a whole number in the "
         "range of an int"},
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
    const std::pair<float, float> values[] = {{-1, 2}, {0.375f, 3}, {0.5f, 8}, {0.625f, 4}, {9, 0}};
    for (const auto& [t, value] : values) EXPECT_EQ(RampValue(ramp, t), value) << t;
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
