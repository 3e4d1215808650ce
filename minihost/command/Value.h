#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace minihost {

using Vector3 = std::array<double, 3>;

/// A value of the command language: nothing, an int of 32 bits, a float of 64 bits, a string, a
/// vector, or an array of one of these. Copies are independent of each other; arrays are shared
/// until one of the copies changes, so that a copy costs the same whatever the size.
class Value {
  public:
    enum class Type {
        Nothing,
        Int,
        Float,
        String,
        Vector,
        IntArray,
        FloatArray,
        StringArray,
        VectorArray
    };

    Value() = default;
    Value(bool value) : data_(static_cast<int>(value)) {}
    Value(int value) : data_(value) {}
    Value(double value) : data_(value) {}
    Value(std::string value) : data_(std::move(value)) {}
    Value(std::string_view value) : data_(std::string(value)) {}
    Value(const char* value) : data_(std::string(value)) {}
    Value(const Vector3& value) : data_(value) {}
    template <class T>
    Value(std::vector<T> items) : data_(std::make_shared<std::vector<T>>(std::move(items))) {}

    /// What a variable of the type starts with: 0, an empty string, an empty array.
    static Value Default(Type type);

    Type GetType() const { return static_cast<Type>(data_.index()); }
    bool IsNone() const { return GetType() == Type::Nothing; }
    bool IsNumber() const { return GetType() == Type::Int || GetType() == Type::Float; }
    bool IsString() const { return GetType() == Type::String; }
    bool IsArray() const { return GetType() >= Type::IntArray; }

    /// The number of elements of an array; of anything else 1, of nothing 0.
    size_t Size() const;
    /// The element of an array, which must have it; a value that is no array is its own element 0.
    Value Element(size_t index) const;
    /// Sets the element of an array and lengthens the array up to it. The element must convert.
    void SetElement(size_t index, const Value& element);
    void Resize(size_t size);

    /// As a number; of a text the number that it begins with, else 0, with the words true, on and
    /// yes for 1; of a vector its length; of arrays and of nothing 0. Numbers that an int can't
    /// hold become the nearest that it can.
    int AsInt() const;
    double AsFloat() const;
    /// A number gives three equal components; a text "1 2 3" its numbers.
    Vector3 AsVector() const;
    /// As text: numbers so that they read back the same, vectors and arrays with blanks between.
    std::string AsString() const;
    /// The elements, each as text; of a value that is no array itself, of nothing none.
    std::vector<std::string> AsStrings() const;
    bool AsBool() const { return AsFloat() != 0; }

    /// The text itself; the value must be a string.
    const std::string& String() const { return std::get<std::string>(data_); }
    /// Null unless the value is an array of T.
    template <class T>
    const std::vector<T>* Items() const {
        const auto* items = std::get_if<Shared<T>>(&data_);
        return items ? items->get() : nullptr;
    }

    /// The value as another type; none where there is no conversion: from nothing, or between
    /// arrays and what is none.
    std::optional<Value> To(Type type) const;

    bool operator==(const Value& other) const;

  private:
    template <class T>
    using Shared = std::shared_ptr<std::vector<T>>;

    /// The elements for writing, no longer shared.
    template <class T>
    static std::vector<T>& Own(Shared<T>& items);

    std::variant<std::monostate, int, double, std::string, Vector3, Shared<int>, Shared<double>,
                 Shared<std::string>, Shared<Vector3>>
        data_;
};

/// The name of a type as scripts write it: "int", "string[]"; "nothing" for Nothing.
std::string_view TypeName(Value::Type type);
/// The type of the elements of an array type; of another type itself.
Value::Type ElementType(Value::Type type);
/// The type of arrays of a type of single values.
Value::Type ArrayType(Value::Type element);

/// The number that a whole text is, with an optional sign: an Int where it is written as a whole
/// number that fits, else a Float; Nothing where the text is no number.
Value ParseNumber(std::string_view text);

}  // namespace minihost
