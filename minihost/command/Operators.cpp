#include "minihost/command/Operators.h"

#include <fmt/core.h>

#include <cmath>

namespace minihost {

namespace {

struct OperatorInfo {
    std::string_view sign;
    int precedence;
};
constexpr std::array<OperatorInfo, 12> kOperators = {{{"+", 3},
                                                      {"-", 3},
                                                      {"*", 4},
                                                      {"/", 4},
                                                      {"%", 4},
                                                      {"^", 4},
                                                      {"<", 2},
                                                      {"<=", 2},
                                                      {">", 2},
                                                      {">=", 2},
                                                      {"==", 1},
                                                      {"!=", 1}}};

Answer Refused(Operator op, const Value& left, const Value& right) {
    return CommandError{fmt::format("'{}' can't be applied to {} and {}", OperatorSign(op),
                                    TypeName(left.GetType()), TypeName(right.GetType()))};
}

Answer DivisionByZero() {
    return CommandError{"division by zero"};
}

template <class T>
bool Compare(Operator op, const T& a, const T& b) {
    switch (op) {
        case Operator::Less:
            return a < b;
        case Operator::LessEqual:
            return a <= b;
        case Operator::Greater:
            return a > b;
        case Operator::GreaterEqual:
            return a >= b;
        case Operator::Equal:
            return a == b;
        default:
            return a != b;
    }
}

Answer ApplyToInts(Operator op, int a, int b) {
    const auto x = static_cast<unsigned>(a), y = static_cast<unsigned>(b);
    switch (op) {
        case Operator::Add:
            return static_cast<int>(x + y);
        case Operator::Subtract:
            return static_cast<int>(x - y);
        case Operator::Multiply:
            return static_cast<int>(x * y);
        case Operator::Divide:
            if (b == 0) return DivisionByZero();
            return b == -1 ? static_cast<int>(0 - x) : a / b;
        case Operator::Modulo:
            if (b == 0) return DivisionByZero();
            return b == -1 ? 0 : a % b;
        case Operator::Cross:
            return Refused(op, a, b);
        default:
            return Compare(op, a, b);
    }
}

Answer ApplyToFloats(Operator op, double a, double b) {
    switch (op) {
        case Operator::Add:
            return a + b;
        case Operator::Subtract:
            return a - b;
        case Operator::Multiply:
            return a * b;
        case Operator::Divide:
            if (b == 0) return DivisionByZero();
            return a / b;
        case Operator::Modulo:
            if (b == 0) return DivisionByZero();
            return std::fmod(a, b);
        case Operator::Cross:
            return Refused(op, a, b);
        default:
            return Compare(op, a, b);
    }
}

Answer ApplyToStrings(Operator op, const Value& left, const Value& right) {
    if (op == Operator::Add) return left.AsString() + right.AsString();
    if (Precedence(op) > Precedence(Operator::Less)) return Refused(op, left, right);
    return Compare(op, left.AsString(), right.AsString());
}

Vector3 Scaled(const Vector3& v, double factor) {
    return {v[0] * factor, v[1] * factor, v[2] * factor};
}

Answer MultiplyVectors(const Value& left, const Value& right) {
    if (left.IsNumber()) return Scaled(right.AsVector(), left.AsFloat());
    if (right.IsNumber()) return Scaled(left.AsVector(), right.AsFloat());
    const Vector3 a = left.AsVector(), b = right.AsVector();
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Answer ApplyToVectors(Operator op, const Value& left, const Value& right) {
    const Vector3 a = left.AsVector(), b = right.AsVector();
    switch (op) {
        case Operator::Add:
            return Vector3{a[0] + b[0], a[1] + b[1], a[2] + b[2]};
        case Operator::Subtract:
            return Vector3{a[0] - b[0], a[1] - b[1], a[2] - b[2]};
        case Operator::Multiply:
            return MultiplyVectors(left, right);
        case Operator::Cross:
            return Vector3{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                           a[0] * b[1] - a[1] * b[0]};
        case Operator::Divide:
            if (!right.IsNumber()) return Refused(op, left, right);
            if (right.AsFloat() == 0) return DivisionByZero();
            return Vector3{a[0] / b[0], a[1] / b[1], a[2] / b[2]};
        case Operator::Modulo:
            return Refused(op, left, right);
        case Operator::Equal:
            return a == b;
        case Operator::NotEqual:
            return a != b;
        default:
            return Compare(op, left.AsFloat(), right.AsFloat());
    }
}

}  // namespace

std::string_view OperatorSign(Operator op) {
    return kOperators[static_cast<size_t>(op)].sign;
}

std::optional<Operator> FindOperator(std::string_view sign, bool assigning) {
    if (assigning) {
        if (sign.size() != 2 || sign[1] != '=') return std::nullopt;
        sign.remove_suffix(1);
    }
    for (size_t i = 0; i < kOperators.size(); ++i) {
        const auto op = static_cast<Operator>(i);
        if (kOperators[i].sign != sign) continue;
        if (assigning && Precedence(op) < Precedence(Operator::Add)) return std::nullopt;
        return op;
    }
    return std::nullopt;
}

int Precedence(Operator op) {
    return kOperators[static_cast<size_t>(op)].precedence;
}

Answer ApplyOperator(Operator op, const Value& left, const Value& right) {
    using Type = Value::Type;
    const Type a = left.GetType(), b = right.GetType();
    if (a == Type::Int && b == Type::Int) return ApplyToInts(op, left.AsInt(), right.AsInt());
    if (left.IsNone() || right.IsNone() || left.IsArray() || right.IsArray())
        return Refused(op, left, right);
    if (a == Type::String || b == Type::String) return ApplyToStrings(op, left, right);
    if (a == Type::Vector || b == Type::Vector) return ApplyToVectors(op, left, right);
    return ApplyToFloats(op, left.AsFloat(), right.AsFloat());
}

}  // namespace minihost
