#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>

#include "minihost/command/Operators.h"
#include "minihost/command/builtins/Builtins.h"

namespace minihost {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

using Function1 = double (*)(double);
using Function2 = double (*)(double, double);

constexpr std::pair<const char*, Function1> kFunctions1[] = {
    {"sqrt", [](double x) { return std::sqrt(x); }},
    {"exp", [](double x) { return std::exp(x); }},
    {"log", [](double x) { return std::log(x); }},
    {"log10", [](double x) { return std::log10(x); }},
    {"sin", [](double x) { return std::sin(x); }},
    {"cos", [](double x) { return std::cos(x); }},
    {"tan", [](double x) { return std::tan(x); }},
    {"asin", [](double x) { return std::asin(x); }},
    {"acos", [](double x) { return std::acos(x); }},
    {"atan", [](double x) { return std::atan(x); }},
    {"floor", [](double x) { return std::floor(x); }},
    {"ceil", [](double x) { return std::ceil(x); }},
    {"trunc", [](double x) { return std::trunc(x); }},
    {"deg_to_rad", [](double x) { return x * kDegree; }},
    {"rad_to_deg", [](double x) { return x / kDegree; }},
};

constexpr std::pair<const char*, Function2> kFunctions2[] = {
    {"pow", [](double x, double y) { return std::pow(x, y); }},
    {"atan2", [](double y, double x) { return std::atan2(y, x); }},
    {"fmod", [](double x, double y) { return std::fmod(x, y); }},
    {"hypot", [](double x, double y) { return std::hypot(x, y); }},
};

/// The arguments must be numbers; other values that convert are none here.
std::optional<CommandError> CheckNumbers(const CommandCall& call) {
    for (const Value& argument : call.arguments)
        if (!argument.IsNumber())
            return CommandError{
                fmt::format("{} takes numbers, not {}", call.name, TypeName(argument.GetType()))};
    return std::nullopt;
}

void AddNumeric(CommandTable& commands, const std::string& name, const std::string& arguments,
                size_t least, size_t most,
                std::function<Value(const std::vector<Value>&)> function) {
    AddCounted(commands, name, name + "(" + arguments + ")", least, most,
               [function = std::move(function)](CommandCall& call) -> Answer {
                   if (auto error = CheckNumbers(call)) return std::move(*error);
                   return function(call.arguments);
               });
}

bool IsLess(const Value& a, const Value& b) {
    return a.AsFloat() < b.AsFloat();
}

/// The chosen of two numbers, a float when either is one.
Value Chosen(const Value& chosen, const Value& other) {
    if (other.GetType() == Value::Type::Float) return chosen.AsFloat();
    return chosen;
}

/// Numbers keep their type: the absolute value of an int is one.
void AddChoices(CommandTable& commands) {
    AddNumeric(commands, "abs", "X", 1, 1, [](const auto& a) -> Value {
        if (a[0].GetType() == Value::Type::Float) return std::fabs(a[0].AsFloat());
        return a[0].AsInt() < 0 ? ApplyOperator(Operator::Subtract, 0, a[0]).Take() : a[0];
    });
    AddNumeric(commands, "sign", "X", 1, 1, [](const auto& a) -> Value {
        return (a[0].AsFloat() > 0 ? 1 : 0) - (a[0].AsFloat() < 0 ? 1 : 0);
    });
    AddNumeric(commands, "min", "A, B", 2, 2, [](const auto& a) {
        return IsLess(a[1], a[0]) ? Chosen(a[1], a[0]) : Chosen(a[0], a[1]);
    });
    AddNumeric(commands, "max", "A, B", 2, 2, [](const auto& a) {
        return IsLess(a[0], a[1]) ? Chosen(a[1], a[0]) : Chosen(a[0], a[1]);
    });
    AddNumeric(commands, "clamp", "LEAST, MOST, X", 3, 3, [](const auto& a) {
        return IsLess(a[2], a[0]) ? a[0] : IsLess(a[1], a[2]) ? a[1] : a[2];
    });
    AddNumeric(commands, "smoothstep", "FROM, TO, X", 3, 3, [](const auto& a) -> Value {
        const double from = a[0].AsFloat(), to = a[1].AsFloat(), x = a[2].AsFloat();
        if (from == to) return x < from ? 0.0 : 1.0;
        const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
        return t * t * (3 - 2 * t);
    });
}

/// The same numbers in every run with the same seed.
void AddRandom(CommandTable& commands) {
    auto random = std::make_shared<std::mt19937_64>();
    AddNumeric(commands, "seed", "NUMBER", 1, 1, [random](const auto& a) {
        random->seed(static_cast<uint64_t>(a[0].AsInt()));
        return a[0];
    });
    AddNumeric(commands, "rand", "[LEAST,] MOST", 1, 2, [random](const auto& a) -> Value {
        const double least = a.size() == 2 ? a[0].AsFloat() : 0, most = a.back().AsFloat();
        const double unit = static_cast<double>((*random)() >> 11) * 0x1p-53;
        return least + (most - least) * unit;
    });
}

void AddVectors(CommandTable& commands) {
    AddCounted(commands, "mag", "mag(VECTOR)", 1, 1, [](CommandCall& call) -> Answer {
        return Value(call.arguments[0].AsVector()).AsFloat();
    });
    AddCounted(commands, "unit", "unit(VECTOR)", 1, 1, [](CommandCall& call) -> Answer {
        const Value vector = call.arguments[0].AsVector();
        const double length = vector.AsFloat();
        if (length == 0) return vector;
        return ApplyOperator(Operator::Divide, vector, length);
    });
    AddCounted(commands, "dot", "dot(VECTOR, VECTOR)", 2, 2, [](CommandCall& call) {
        return ApplyOperator(Operator::Multiply, call.arguments[0].AsVector(),
                             call.arguments[1].AsVector());
    });
    AddCounted(commands, "cross", "cross(VECTOR, VECTOR)", 2, 2, [](CommandCall& call) {
        return ApplyOperator(Operator::Cross, call.arguments[0].AsVector(),
                             call.arguments[1].AsVector());
    });
}

}  // namespace

void AddMathCommands(CommandTable& commands) {
    for (const auto& [name, one] : kFunctions1)
        AddNumeric(commands, name, "X", 1, 1,
                   [function = one](const auto& a) -> Value { return function(a[0].AsFloat()); });
    for (const auto& [name, two] : kFunctions2)
        AddNumeric(commands, name, "X, Y", 2, 2, [function = two](const auto& a) -> Value {
            return function(a[0].AsFloat(), a[1].AsFloat());
        });
    AddChoices(commands);
    AddRandom(commands);
    AddVectors(commands);
}

}  // namespace minihost
