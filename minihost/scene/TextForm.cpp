#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "minihost/scene/Forms.h"

namespace minihost {
namespace {

constexpr char kHex[] = "0123456789abcdef";

// Locale-free, and for these letters only.
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool StartsBare(char c) {
    return IsLetter(c) || c == '|';
}
bool IsBare(char c) {
    return StartsBare(c) || IsDigit(c) || c == '.' || c == ':' || c == '[' || c == ']';
}
bool IsSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}
int HexOf(char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

class Writer {
  public:
    explicit Writer(std::string& out) : out_(out) {}

    void operator()(const std::string& text) {
        if (!text.empty() && StartsBare(text[0]) && std::ranges::all_of(text, IsBare))
            out_ += text;
        else
            Quote(text);
    }
    void operator()(double number) { Number(number); }
    void operator()(const std::vector<float>& numbers) { Many('f', numbers); }
    void operator()(const std::vector<int>& numbers) { Many('i', numbers); }
    void operator()(const std::vector<double>& numbers) { Many('d', numbers); }
    void operator()(const Blob& blob) {
        out_ += "b(";
        for (size_t i = 0; i < blob.bytes.size(); ++i) {
            if (i > 0 && i % 48 == 0) out_ += '\n';
            Byte(blob.bytes[i]);
        }
        out_ += ')';
    }

  private:
    void Byte(char c) {
        const auto byte = static_cast<unsigned char>(c);
        out_ += kHex[byte >> 4];
        out_ += kHex[byte & 15];
    }
    void Quote(const std::string& text) {
        out_ += '"';
        for (const char c : text) {
            if (c == '"' || c == '\\')
                (out_ += '\\') += c;
            else if (c == '\n')
                out_ += "\\n";
            else if (c == '\t')
                out_ += "\\t";
            else if (c == '\r')
                out_ += "\\r";
            else if (static_cast<unsigned char>(c) < 32 || c == 127)
                out_ += "\\x", Byte(c);
            else
                out_ += c;
        }
        out_ += '"';
    }
    template <class T>
    void Number(T number) {
        char buffer[32];
        if constexpr (std::is_floating_point_v<T>) {
            if (!std::isfinite(number)) return Bits(number);
        }
        out_.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
    }
    template <class T>
    void Bits(T number) {
        using Unsigned = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        const auto bits = std::bit_cast<Unsigned>(number);
        out_ += "0x";
        for (int shift = sizeof(T) * 8 - 4; shift >= 0; shift -= 4)
            out_ += kHex[(bits >> shift) & 15];
    }
    template <class T>
    void Many(char kind, const std::vector<T>& numbers) {
        (out_ += kind) += '(';
        for (size_t i = 0; i < numbers.size(); ++i) {
            if (i > 0) out_ += i % 12 == 0 ? '\n' : ' ';
            Number(numbers[i]);
        }
        out_ += ')';
    }

    std::string& out_;
};

class Reader {
  public:
    explicit Reader(std::string_view text) : text_(text), at_(kTextHeader.size()) {}

    void Read(const std::function<void(SceneStatement&)>& take) {
        SceneStatement statement;
        for (SkipSpace(); at_ < text_.size(); SkipSpace()) {
            ReadStatement(statement);
            take(statement);
        }
    }

  private:
    [[noreturn]] void Fail(const char* message) const { throw DocumentError{message, at_}; }
    char Now() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void SkipSpace() {
        while (at_ < text_.size() && IsSpace(text_[at_])) ++at_;
    }

    void ReadStatement(SceneStatement& statement) {
        statement.tokens.clear();
        statement.at = at_;
        for (;; SkipSpace()) {
            if (at_ == text_.size()) Fail("expected ';' before the end of the file");
            if (Now() == ';' && !statement.tokens.empty()) break;
            const size_t at = at_;
            statement.tokens.push_back({ReadWord(), at});
            if (!IsSpace(Now()) && Now() != ';') Fail("expected a blank or ';'");
        }
        ++at_;
    }

    SceneWord::What ReadWord() {
        const char c = Now();
        if (c == '"') return ReadQuoted();
        if (IsDigit(c) || c == '-' || c == '.') return ReadNumber<double>();
        if (!StartsBare(c)) Fail("expected a word or a number");
        if (at_ + 1 < text_.size() && text_[at_ + 1] == '(') return ReadMany(c);
        const size_t start = at_;
        while (IsBare(Now())) ++at_;
        return std::string(text_.substr(start, at_ - start));
    }

    SceneWord::What ReadMany(char kind) {
        at_ += 2;
        switch (kind) {
            case 'f':
                return ReadNumbers<float>();
            case 'i':
                return ReadNumbers<int>();
            case 'd':
                return ReadNumbers<double>();
            case 'b':
                return ReadBlob();
            default:
                at_ -= 2;
                Fail("expected f(, i(, d( or b(");
        }
    }

    template <class T>
    std::vector<T> ReadNumbers() {
        std::vector<T> numbers;
        for (SkipSpace(); Now() != ')'; SkipSpace()) {
            numbers.push_back(ReadNumber<T>());
            if (!IsSpace(Now()) && Now() != ')') Fail("expected a blank or ')'");
        }
        ++at_;
        return numbers;
    }

    template <class T>
    T ReadNumber() {
        if (std::is_floating_point_v<T> && Now() == '0' && text_.substr(at_).starts_with("0x"))
            return ReadBits<T>();
        // from_chars takes "inf" and "nan" too, which are no numbers here.
        if (!IsDigit(Now()) && Now() != '-' && Now() != '.') Fail("expected a number");
        T number{};
        const char* end = text_.data() + text_.size();
        const auto [ptr, status] = std::from_chars(text_.data() + at_, end, number);
        if (status == std::errc::result_out_of_range) Fail("the number is out of range");
        if (status != std::errc()) Fail("expected a number");
        if constexpr (std::is_floating_point_v<T>) {
            if (!std::isfinite(number)) Fail("expected a number");
        }
        at_ = static_cast<size_t>(ptr - text_.data());
        return number;
    }

    template <class T>
    T ReadBits() {
        using Unsigned = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        at_ += 2;
        Unsigned bits = 0;
        for (size_t i = 0; i < 2 * sizeof(T); ++i) bits = (bits << 4) | Unsigned(HexDigit());
        return std::bit_cast<T>(bits);
    }
    int HexDigit() {
        const int digit = HexOf(Now());
        if (digit < 0) Fail("expected a hexadecimal digit");
        ++at_;
        return digit;
    }
    char HexByte() {
        const int high = HexDigit();
        return static_cast<char>(high * 16 + HexDigit());
    }

    Blob ReadBlob() {
        Blob blob;
        for (SkipSpace(); Now() != ')'; SkipSpace()) blob.bytes += HexByte();
        ++at_;
        return blob;
    }

    std::string ReadQuoted() {
        const size_t start = at_++;
        std::string text;
        for (;;) {
            const size_t end = text_.find_first_of("\"\\", at_);
            if (end == text_.npos) {
                at_ = start;
                Fail("the text has no closing '\"'");
            }
            text += text_.substr(at_, end - at_);
            at_ = end + 1;
            if (text_[end] == '"') return text;
            text += ReadEscape();
        }
    }
    char ReadEscape() {
        const char c = Now();
        ++at_;
        switch (c) {
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case 'r':
                return '\r';
            case 'x':
                return HexByte();
            case '"':
            case '\\':
                return c;
            default:
                --at_;
                Fail("expected n, t, r, x, \\ or \" after \\");
        }
    }

    std::string_view text_;
    size_t at_;
};

}  // namespace

void AppendText(std::string& out, const SceneStatement& statement) {
    Writer writer(out);
    for (const SceneWord& token : statement.tokens) {
        if (&token != statement.tokens.data()) out += ' ';
        std::visit(writer, token.what);
    }
    out += ";\n";
}

void ReadText(std::string_view content, const std::function<void(SceneStatement&)>& take) {
    Reader(content).Read(take);
}

}  // namespace minihost
