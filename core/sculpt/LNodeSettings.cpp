#include "core/sculpt/LNodeSettings.h"

#include <fmt/format.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <unordered_map>

#include "core/io/Quoted.h"

namespace VantrelSDK {

float RampValue(const Ramp& ramp, float t) {
    if (ramp.empty()) return 0;
    const auto next = std::upper_bound(
        ramp.begin(), ramp.end(), t, [](float at, const RampPoint& p) { return at < p.position; });
    if (next == ramp.begin()) return ramp.front().value;
    if (next == ramp.end()) return ramp.back().value;
    const RampPoint& a = next[-1];
    const RampPoint& b = *next;
    return a.value + (b.value - a.value) * ((t - a.position) / (b.position - a.position));
}

namespace {

template <class Member>
struct Entry {
    std::string_view name;
    Member LNodeSettings::*member;
    int least = INT_MIN, most = INT_MAX;
};

using AnyEntry = std::variant<Entry<bool>, Entry<int>, Entry<float>, Entry<SettingInt2>,
                              Entry<SettingFloat2>, Entry<SettingFloat3>,
                              Entry<SettingArray<float, 20>>, Entry<SettingArray<bool, 3>>>;

constexpr AnyEntry Entries[] = {
#define NODE_SETTING(type, name, value) Entry<type>{#name, &LNodeSettings::name},
#define NODE_SETTING_WITHIN(name, value, least, most) \
    Entry<int>{#name, &LNodeSettings::name, least, most},
#define NODE_SETTING_ARRAY(type, name, value, size) \
    Entry<SettingArray<type, size>>{#name, &LNodeSettings::name},
#include "core/sculpt/LNodeSettings.def"
};

std::string_view NameOf(const AnyEntry& any) {
    return std::visit([](const auto& entry) { return entry.name; }, any);
}

const AnyEntry* Find(std::string_view name) {
    static const auto byName = [] {
        std::unordered_map<std::string_view, const AnyEntry*> map;
        for (const AnyEntry& entry : Entries) map[NameOf(entry)] = &entry;
        return map;
    }();
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

bool ConvertNumber(double value, int least, int most, int& to) {
    if (!(value >= least && value <= most) || value != std::floor(value)) return false;
    to = static_cast<int>(value);
    return true;
}

bool ConvertNumber(double value, int, int, float& to) {
    const auto narrow = static_cast<float>(value);
    if (!std::isfinite(narrow)) return false;
    to = narrow;
    return true;
}

template <class T>
bool Convert(const SettingValue& value, int least, int most, T& to) {
    const double* number = std::get_if<double>(&value);
    return number && ConvertNumber(*number, least, most, to);
}

bool Convert(const SettingValue& value, int, int, bool& to) {
    const bool* given = std::get_if<bool>(&value);
    if (given) to = *given;
    return given;
}

template <class Part, size_t N>
bool Convert(const SettingValue& value, int least, int most, std::array<Part, N>& to) {
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    if (!numbers || numbers->size() != N) return false;
    for (size_t i = 0; i < N; ++i) {
        if (!ConvertNumber((*numbers)[i], least, most, to[i])) return false;
    }
    return true;
}

// What Convert takes, in words; the last parameter chooses the type.

std::string Describe(int, int, bool) {
    return "true or false";
}

std::string Describe(int least, int most, int) {
    if (least == INT_MIN && most == INT_MAX) return "a whole number in the range of an int";
    return fmt::format("a whole number from {} to {}", least, most);
}

std::string Describe(int, int, float) {
    return "a number in the range of a float";
}

template <class Part, size_t N>
std::string Describe(int least, int most, const std::array<Part, N>&) {
    return fmt::format("an array of {} numbers, each {}", N, Describe(least, most, Part()));
}

/// `take` is given the converted value, when there is one.
template <class T, class Member, class Take>
SettingResult ConvertFor(const Entry<Member>& entry, const SettingValue& value, Take take) {
    T converted{};
    if (!Convert(value, entry.least, entry.most, converted)) {
        const std::string expected = Describe(entry.least, entry.most, converted);
        return {fmt::format("the setting \"{}\" takes {}", entry.name, expected)};
    }
    take(converted);
    return {};
}

template <class T>
SettingResult SetMember(const Entry<T>& entry, T& member, const SettingValue& value,
                        std::optional<int> index) {
    if (index) return {fmt::format("the setting \"{}\" takes no index", entry.name)};
    return ConvertFor<T>(entry, value, [&](const T& converted) { member = converted; });
}

template <class T, int Size>
SettingResult SetMember(const Entry<SettingArray<T, Size>>& entry, SettingArray<T, Size>& member,
                        const SettingValue& value, std::optional<int> index) {
    if (!index || *index < 0 || *index >= Size) {
        return {
            fmt::format("the setting \"{}\" needs an index from 0 to {}", entry.name, Size - 1)};
    }
    return ConvertFor<T>(entry, value, [&](T converted) { member.Set(*index, converted); });
}

SettingValue ValueOf(bool value) {
    return value;
}
SettingValue ValueOf(int value) {
    return static_cast<double>(value);
}
SettingValue ValueOf(float value) {
    return static_cast<double>(value);
}
template <class Part, size_t N>
SettingValue ValueOf(const std::array<Part, N>& value) {
    return std::vector<double>(value.begin(), value.end());
}

template <class T>
std::optional<SettingValue> GetMember(const T& member, std::optional<int> index) {
    if (index) return std::nullopt;
    return ValueOf(member);
}

template <class T, int Size>
std::optional<SettingValue> GetMember(const SettingArray<T, Size>& member,
                                      std::optional<int> index) {
    if (!index || *index < 0 || *index >= Size) return std::nullopt;
    return ValueOf(member[*index]);
}

}  // namespace

SettingResult LNodeSettings::Set(std::string_view name, const SettingValue& value,
                                 std::optional<int> index) {
    const AnyEntry* any = Find(name);
    if (!any) return {"there is no setting " + Quoted(name)};
    return std::visit(
        [&](const auto& entry) { return SetMember(entry, this->*entry.member, value, index); },
        *any);
}

std::optional<SettingValue> LNodeSettings::Get(std::string_view name,
                                               std::optional<int> index) const {
    const AnyEntry* any = Find(name);
    if (!any) return std::nullopt;
    return std::visit([&](const auto& entry) { return GetMember(this->*entry.member, index); },
                      *any);
}

std::vector<std::string_view> LNodeSettings::Names() {
    std::vector<std::string_view> names;
    for (const AnyEntry& entry : Entries) names.push_back(NameOf(entry));
    return names;
}

}  // namespace VantrelSDK
