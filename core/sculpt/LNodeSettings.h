#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace VantrelSDK {

using SettingInt2 = std::array<int, 2>;
using SettingFloat2 = std::array<float, 2>;
using SettingFloat3 = std::array<float, 3>;

/// A setting with one value for each index from 0 to Size - 1; those never set read the default.
template <class T, int Size>
class SettingArray {
  public:
    static constexpr int size = Size;

    explicit SettingArray(T value) : default_(value) {}

    /// Any index may be asked for.
    T operator[](int index) const {
        return index >= 0 && index < static_cast<int>(values_.size()) ? values_[index] : default_;
    }
    /// False, without a change, for an index out of range.
    bool Set(int index, T value) {
        if (index < 0 || index >= Size) return false;
        if (index >= static_cast<int>(values_.size())) values_.resize(index + 1, default_);
        values_[index] = value;
        return true;
    }

  private:
    T default_;
    std::vector<T> values_;
};

/// A point of a falloff curve: 0 is the centre of the brush, 1 its rim.
struct RampPoint {
    float position = 0, value = 0;

    bool operator==(const RampPoint&) const = default;
};

/// A curve, linear between its points, which are ordered by position. Two points at one position
/// make a step.
using Ramp = std::vector<RampPoint>;

/// The value of the curve at t; outside the points that of the end. 0 for a ramp without points.
float RampValue(const Ramp& ramp, float t);

/// What a setting is set to: true or false, a number, or the numbers of a pair or triple.
using SettingValue = std::variant<bool, double, std::vector<double>>;

/// Empty when all went well, else what was expected.
struct SettingResult {
    std::string message;

    explicit operator bool() const { return message.empty(); }
};

/// The settings of a node as plain values, each a field with the attribute's name and default.
/// LNodeSettings.def is the list.
class LNodeSettings {
  public:
#define NODE_SETTING(type, name, value) type name = Filled<type>(value);
#define NODE_SETTING_WITHIN(name, value, least, most) int name = value;
#define NODE_SETTING_ARRAY(type, name, value, size) \
    SettingArray<type, size> name = SettingArray<type, size>(value);
#include "core/sculpt/LNodeSettings.def"

    /// The falloff curves of the sculpt modes and of the paint modes.
    Ramp falloff{{0, 1}, {1, 0}};
    Ramp falloff2{{0, 1}, {1, 0}};

    /// Sets a setting by its name. `index` is needed for an array setting and not allowed for any
    /// other. A wrong name, type, index or number changes nothing.
    SettingResult Set(std::string_view name, const SettingValue& value,
                      std::optional<int> index = std::nullopt);
    /// The value that Set takes, or nothing where Set would refuse the name or the index.
    std::optional<SettingValue> Get(std::string_view name,
                                    std::optional<int> index = std::nullopt) const;
    /// All names that Set and Get know, in the order of the list.
    static std::vector<std::string_view> Names();

  private:
    /// A pair or triple has one default for all its parts.
    template <class T, class Part>
    static constexpr T Filled(Part part) {
        if constexpr (std::is_arithmetic_v<T>) {
            return T(part);
        } else {
            T all{};
            for (auto& one : all) one = static_cast<typename T::value_type>(part);
            return all;
        }
    }
};

}  // namespace VantrelSDK
