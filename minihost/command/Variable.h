#pragma once

#include <map>
#include <string>

#include "minihost/command/Value.h"

namespace minihost {

/// A variable of a script.
struct Variable {
    /// Nothing until it is declared or first assigned; from then on it stays.
    Value::Type type = Value::Type::Nothing;
    Value value;
    /// Of a parameter that stands for an array of the caller: that variable.
    Variable* alias = nullptr;

    Variable& Get() { return alias ? *alias : *this; }

    bool IsDeclared() const { return type != Value::Type::Nothing; }
    void Declare(Value::Type as) {
        type = as;
        value = Value::Default(as);
    }
    /// Sets the value, converted; an undeclared variable takes the value's type. False when there
    /// is no conversion.
    bool Assign(Value from) {
        if (from.IsNone()) return false;
        if (!IsDeclared()) type = from.GetType();
        if (type == from.GetType()) {
            value = std::move(from);
            return true;
        }
        auto converted = from.To(type);
        if (converted) value = std::move(*converted);
        return converted.has_value();
    }
};

/// The global variables by their names without the $. References stay good.
using GlobalVariables = std::map<std::string, Variable, std::less<>>;

}  // namespace minihost
