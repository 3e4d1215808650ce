#pragma once

#include <string_view>

#include "minihost/command/CommandTable.h"

namespace minihost {

enum class Operator {
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    /// Cross product of vectors.
    Cross,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual
};

/// As a script writes it.
std::string_view OperatorSign(Operator op);
/// The operator with this sign, or with this sign and '=' behind it (a compound assignment) when
/// `assigning`; none for other signs.
std::optional<Operator> FindOperator(std::string_view sign, bool assigning);
/// How strongly it binds its operands, from 1.
int Precedence(Operator op);

/// Ints stay ints (of 32 bits, wrapping round); with a float the result is one; with a string `+`
/// joins texts, and comparisons compare texts. Vectors take numbers as three equal components, `*`
/// of two is their dot product; they compare by length, for equality by components. An error for
/// division by zero, other operators on strings, and arrays.
Answer ApplyOperator(Operator op, const Value& left, const Value& right);

}  // namespace minihost
