#include "minihost/command/Value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace minihost {

namespace {

using Type = Value::Type;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string NumberText(double number) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string ItemText(int item) {
    return std::to_string(item);
}
std::string ItemText(double item) {
    return NumberText(item);
}
const std::string& ItemText(const std::string& item) {
    return item;
}
std::string ItemText(const Vector3& item) {
    return NumberText(item[0]) + " " + NumberText(item[1]) + " " + NumberText(item[2]);
}

template <class T>
std::string Joined(const std::vector<T>& items) {
    std::string text;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += ' ';
        text += ItemText(items[i]);
    }
    return text;
}

/// The number that a text begins with, and how much of the text that is; 0 when there is none.
size_t ReadNumber(std::string_view text, double& number) {
    size_t at = 0;
    while (at < text.size() && IsBlank(text[at])) ++at;
    const size_t sign = at;
    if (at < text.size() && text[at] == '+') ++at;
    // Words like "inf" are text, not numbers.
    const size_t digits = at < text.size() && text[at] == '-' && at == sign ? at + 1 : at;
    if (digits >= text.size() ||
        !(std::isdigit(static_cast<unsigned char>(text[digits])) || text[digits] == '.'))
        return 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), number);
    if (error == std::errc::invalid_argument) return 0;
    if (error == std::errc::result_out_of_range) {
        const std::string_view read(text.data() + at, end);
        const bool small = read.find("e-") != read.npos || read.find("E-") != read.npos;
        number = small ? 0 : std::numeric_limits<double>::infinity();
        if (text[sign] == '-') number = -number;
    }
    return static_cast<size_t>(end - text.data());
}

double NumberOf(const std::string& text) {
    double number = 0;
    if (ReadNumber(text, number) > 0) return number;
    return text == "true" || text == "on" || text == "yes" ? 1 : 0;
}

Vector3 VectorOf(const std::string& text) {
    Vector3 vector{};
    std::string_view rest = text;
    for (double& number : vector) rest.remove_prefix(ReadNumber(rest, number));
    return vector;
}

int Clamped(double number) {
    if (std::isnan(number)) return 0;
    return static_cast<int>(std::clamp<double>(number, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

template <class T>
Value Converted(const Value& array) {
    std::vector<T> items;
    items.reserve(array.Size());
    for (size_t i = 0; i < array.Size(); ++i) {
        const Value item = array.Element(i);
        if constexpr (std::is_same_v<T, int>) items.push_back(item.AsInt());
        if constexpr (std::is_same_v<T, double>) items.push_back(item.AsFloat());
        if constexpr (std::is_same_v<T, std::string>) items.push_back(item.AsString());
        if constexpr (std::is_same_v<T, Vector3>) items.push_back(item.AsVector());
    }
    return items;
}

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

Value Value::Default(Type type) {
    switch (type) {
        case Type::Nothing:
            return {};
        case Type::Int:
            return 0;
        case Type::Float:
            return 0.0;
        case Type::String:
            return std::string();
        case Type::Vector:
            return Vector3{};
        case Type::IntArray:
            return std::vector<int>();
        case Type::FloatArray:
            return std::vector<double>();
        case Type::StringArray:
            return std::vector<std::string>();
        case Type::VectorArray:
            return std::vector<Vector3>();
    }
    return {};
}

template <class T>
std::vector<T>& Value::Own(Shared<T>& items) {
    if (items.use_count() > 1) items = std::make_shared<std::vector<T>>(*items);
    return *items;
}

size_t Value::Size() const {
    return std::visit(Overloaded{[](const std::monostate&) { return size_t{0}; },
                                 []<class T>(const Shared<T>& items) { return items->size(); },
                                 [](const auto&) { return size_t{1}; }},
                      data_);
}

Value Value::Element(size_t index) const {
    return std::visit(
        Overloaded{[&]<class T>(const Shared<T>& items) -> Value { return (*items)[index]; },
                   [&](const auto&) -> Value { return *this; }},
        data_);
}

void Value::SetElement(size_t index, const Value& element) {
    if (IsArray() && index >= Size()) Resize(index + 1);
    std::visit(
        Overloaded{[&](Shared<int>& items) { Own(items)[index] = element.AsInt(); },
                   [&](Shared<double>& items) { Own(items)[index] = element.AsFloat(); },
                   [&](Shared<std::string>& items) { Own(items)[index] = element.AsString(); },
                   [&](Shared<Vector3>& items) { Own(items)[index] = element.AsVector(); },
                   [](auto&) {}},
        data_);
}

void Value::Resize(size_t size) {
    std::visit(
        Overloaded{[&]<class T>(Shared<T>& items) { Own(items).resize(size); }, [](auto&) {}},
        data_);
}

int Value::AsInt() const {
    const int* number = std::get_if<int>(&data_);
    return number ? *number : Clamped(AsFloat());
}

double Value::AsFloat() const {
    return std::visit(Overloaded{[](int number) { return static_cast<double>(number); },
                                 [](double number) { return number; },
                                 [](const std::string& text) { return NumberOf(text); },
                                 [](const Vector3& v) { return std::hypot(v[0], v[1], v[2]); },
                                 [](const auto&) { return 0.0; }},
                      data_);
}

Vector3 Value::AsVector() const {
    if (const auto* vector = std::get_if<Vector3>(&data_)) return *vector;
    if (IsString()) return VectorOf(String());
    const double number = AsFloat();
    return {number, number, number};
}

std::string Value::AsString() const {
    return std::visit(Overloaded{[](const std::monostate&) { return std::string(); },
                                 []<class T>(const Shared<T>& items) { return Joined(*items); },
                                 [](const auto& item) -> std::string { return ItemText(item); }},
                      data_);
}

std::vector<std::string> Value::AsStrings() const {
    if (const auto* items = Items<std::string>()) return *items;
    std::vector<std::string> texts;
    for (size_t i = 0; i < Size(); ++i) texts.push_back(Element(i).AsString());
    return texts;
}

std::optional<Value> Value::To(Type type) const {
    if (type == GetType()) return *this;
    if (IsNone() || IsArray() != (type >= Type::IntArray)) return std::nullopt;
    switch (type) {
        case Type::Nothing:
            return std::nullopt;
        case Type::Int:
            return AsInt();
        case Type::Float:
            return AsFloat();
        case Type::String:
            return AsString();
        case Type::Vector:
            return AsVector();
        case Type::IntArray:
            return Converted<int>(*this);
        case Type::FloatArray:
            return Converted<double>(*this);
        case Type::StringArray:
            return Converted<std::string>(*this);
        case Type::VectorArray:
            return Converted<Vector3>(*this);
    }
    return std::nullopt;
}

bool Value::operator==(const Value& other) const {
    if (GetType() != other.GetType()) return false;
    return std::visit(
        Overloaded{[&]<class T>(const Shared<T>& items) { return *items == *other.Items<T>(); },
                   [&]<class T>(const T& item) { return item == std::get<T>(other.data_); }},
        data_);
}

std::string_view TypeName(Type type) {
    static constexpr std::array<std::string_view, 9> kNames = {
        "nothing", "int", "float", "string", "vector", "int[]", "float[]", "string[]", "vector[]"};
    return kNames[static_cast<size_t>(type)];
}

Type ElementType(Type type) {
    constexpr int kStep = static_cast<int>(Type::IntArray) - static_cast<int>(Type::Int);
    return type < Type::IntArray ? type : static_cast<Type>(static_cast<int>(type) - kStep);
}

Type ArrayType(Type element) {
    constexpr int kStep = static_cast<int>(Type::IntArray) - static_cast<int>(Type::Int);
    return static_cast<Type>(static_cast<int>(element) + kStep);
}

Value ParseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-') || text.starts_with('+')) return {};
    }
    const char* const end = text.data() + text.size();
    int whole = 0;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        unsigned bits = 0;
        const auto read = std::from_chars(text.data() + 2, end, bits, 16);
        if (read.ec == std::errc() && read.ptr == end) return static_cast<int>(bits);
        return {};
    }
    if (const auto read = std::from_chars(text.data(), end, whole);
        read.ec == std::errc() && read.ptr == end)
        return whole;
    double number = 0;
    if (text.empty() || IsBlank(text[0]) || ReadNumber(text, number) != text.size()) return {};
    return number;
}

}  // namespace minihost
