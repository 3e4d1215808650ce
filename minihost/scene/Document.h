#pragma once

#include <climits>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace minihost {

/// Why a file was refused, and at which of its bytes.
struct DocumentError {
    std::string message;
    size_t at = 0;
};

/// Bytes without a meaning of their own.
struct Blob {
    std::string bytes;
    bool operator==(const Blob&) const = default;
};

/// One word of a scene file: a text, a number, or many numbers of one kind.
struct SceneWord {
    using What = std::variant<std::string, double, std::vector<float>, std::vector<int>,
                              std::vector<double>, Blob>;
    What what;
    /// Its place in the file it came from.
    size_t at = 0;
};

/// Words up to a ";".
struct SceneStatement {
    std::vector<SceneWord> tokens;
    size_t at = 0;

    void Add(SceneWord::What what) { tokens.push_back({std::move(what), 0}); }
};

/// A scene file is a first line and statements. It has one of two forms, which say the same;
/// numbers keep their bits.
///
/// Text begins with "minihost scene 1 text". A text is bare where it is a plain name or path, else
/// in double quotes with \" \\ \n \t \r \xHH; a number is the shortest that reads back the same, or
/// 0x and 16 hexadecimal digits for the bits of one that is not finite; many numbers are f(...),
/// i(...) or d(...), single precision, integers and double precision; bytes are b(...), two
/// hexadecimal digits each.
///
/// Binary begins with "minihost scene 1 binary" and a line feed. A word is a letter, s (text),
/// n (number), f, i, d, b, and, but for n, its length in 8 bytes, then its content; ";" ends a
/// statement. All is little-endian.
enum class SceneForm { Text, Binary };

/// The first line of a form.
std::string_view HeaderOf(SceneForm form);
/// Appends a statement, which has at least one word, to what is written.
void AppendStatement(std::string& out, SceneForm form, const SceneStatement& statement);
/// The form of a file, by its first line; throws a DocumentError for another file.
SceneForm FormOf(std::string_view content);
/// Hands the statements of a file to `take` one by one; what a statement takes in memory is in
/// proportion to its part of the file. Throws a DocumentError.
void ReadStatements(std::string_view content, const std::function<void(SceneStatement&)>& take);

/// Takes the words of a statement one by one; throws a DocumentError for what was not expected.
class StatementReader {
  public:
    explicit StatementReader(SceneStatement& statement) : statement_(statement) {}

    bool AtEnd() const { return next_ == statement_.tokens.size(); }
    const SceneWord* Peek() const { return AtEnd() ? nullptr : &statement_.tokens[next_]; }
    bool NextIsNumber() const { return Peek() && std::holds_alternative<double>(Peek()->what); }
    bool NextIsText() const { return Peek() && std::holds_alternative<std::string>(Peek()->what); }
    /// The next word, moved out of the statement. `expected`: its kind for the message.
    template <class T>
    T Take(const char* expected) {
        T* found = AtEnd() ? nullptr : std::get_if<T>(&statement_.tokens[next_].what);
        if (!found) Expected(expected);
        ++next_;
        return std::move(*found);
    }
    std::string TakeText(const char* expected) { return Take<std::string>(expected); }
    /// A whole number in a range.
    int TakeInt(const char* expected, int least, int greatest) {
        return static_cast<int>(TakeWhole(expected, least, greatest));
    }
    /// The number of a node type or data type.
    unsigned TakeId() { return static_cast<unsigned>(TakeWhole("a type's number", 0, UINT_MAX)); }
    void End() const {
        if (!AtEnd()) Expected("';'");
    }
    /// For the word that was taken last.
    [[noreturn]] void Fail(std::string message) const {
        throw DocumentError{std::move(message),
                            next_ > 0 ? statement_.tokens[next_ - 1].at : statement_.at};
    }

  private:
    /// For the next word.
    [[noreturn]] void Expected(const char* what) const;
    double TakeWhole(const char* expected, double least, double greatest);

    SceneStatement& statement_;
    size_t next_ = 0;
};

/// "12:5" in a text, "byte 312" in a binary file.
std::string PlaceIn(std::string_view content, size_t at);

}  // namespace minihost
