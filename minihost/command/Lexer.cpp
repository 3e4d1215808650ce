#include "minihost/command/Lexer.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace minihost {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsNamePart(char c) {
    return IsNameStart(c) || IsDigit(c);
}
/// What bare words are made of beside names: paths, name spaces, patterns, components, signs.
bool IsWordPart(char c) {
    return IsNamePart(c) ||
           (c != '\0' && std::string_view("|:.*?@[]-+,").find(c) != std::string_view::npos);
}
bool IsWordStart(char c) {
    return IsNamePart(c) ||
           (c != '\0' && std::string_view("|:.*?@-+").find(c) != std::string_view::npos);
}

/// How long the sign is that the text begins with; 0 where there is none.
size_t SignLength(std::string_view text) {
    static constexpr std::array<std::string_view, 16> kTwo = {
        "<<", ">>", "<=", ">=", "==", "!=", "&&", "||",
        "++", "--", "+=", "-=", "*=", "/=", "%=", "^="};
    static constexpr std::string_view kOne = "+-*/%^<>=!?:;,.(){}[]`", kSecond = "<>=&|+-";
    if (text.size() > 1 && kSecond.find(text[1]) != kSecond.npos &&
        std::find(kTwo.begin(), kTwo.end(), text.substr(0, 2)) != kTwo.end())
        return 2;
    return kOne.find(text[0]) != kOne.npos ? 1 : 0;
}

std::string Shown(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7f ? fmt::format("'{}'", c) : fmt::format("byte {:#04x}", byte);
}

char Unescaped(char c) {
    switch (c) {
        case 'n':
            return '\n';
        case 't':
            return '\t';
        case 'r':
            return '\r';
        default:
            return c;
    }
}

}  // namespace

void Lexer::Fail(const Position& position, std::string message, bool atEnd) const {
    throw ScriptFailure{{std::string(source_), position, std::move(message), {}, atEnd}};
}

void Lexer::Advance() {
    if (text_[at_] == '\n') {
        ++position_.line;
        position_.column = 1;
    } else {
        ++position_.column;
    }
    ++at_;
}

void Lexer::SkipBlanks() {
    const size_t start = at_;
    while (at_ < text_.size()) {
        if (IsBlank(At(0))) {
            Advance();
        } else if (At(0) == '/' && At(1) == '/') {
            while (at_ < text_.size() && At(0) != '\n') Advance();
        } else if (At(0) == '/' && At(1) == '*') {
            const Position begin = position_;
            const size_t end = text_.find("*/", at_ + 2);
            while (at_ < std::min(end, text_.size())) Advance();
            if (end == text_.npos) Fail(begin, "the comment has no end; close it with */", true);
            Advance();
            Advance();
        } else {
            break;
        }
    }
    if (at_ > start) spacedAt_ = at_;
}

const Token& Lexer::Peek() {
    if (!peeked_) {
        SkipBlanks();
        nextAt_ = at_;
        const bool spaced = spacedAt_ == at_;
        next_ = Read();
        next_.spaced = spaced;
        peeked_ = true;
    }
    return next_;
}

Token Lexer::Next() {
    Peek();
    peeked_ = false;
    return std::move(next_);
}

Token Lexer::Read() {
    Token token;
    token.position = position_;
    if (at_ >= text_.size()) return token;
    const char c = At(0);
    if (IsNameStart(c) || (c == '$' && IsNameStart(At(1)))) return ReadName(std::move(token));
    if (IsDigit(c) || (c == '.' && IsDigit(At(1)))) return ReadNumber(std::move(token));
    if (c == '"') return ReadString(std::move(token));
    return ReadSign(std::move(token));
}

Token Lexer::ReadName(Token token) {
    const bool variable = At(0) == '$';
    token.kind = variable ? Token::Kind::Variable : Token::Kind::Name;
    if (variable) Advance();
    const size_t start = at_;
    while (IsNamePart(At(0))) Advance();
    token.text = text_.substr(start, at_ - start);
    return token;
}

Token Lexer::ReadNumber(Token token) {
    const size_t start = at_;
    const auto digits = [&] {
        while (IsDigit(At(0))) Advance();
    };
    if (At(0) == '0' && (At(1) == 'x' || At(1) == 'X')) {
        while (IsNamePart(At(0))) Advance();
    }
    digits();
    if (At(0) == '.') Advance();
    digits();
    const bool sign = At(1) == '-' || At(1) == '+';
    if ((At(0) == 'e' || At(0) == 'E') && IsDigit(At(sign ? 2 : 1))) {
        for (int i = sign ? 2 : 1; i > 0; --i) Advance();
        digits();
    }
    token.kind = Token::Kind::Literal;
    token.text = text_.substr(start, at_ - start);
    token.value = ParseNumber(token.text);
    if (token.value.IsNone()) Fail(token.position, fmt::format("'{}' is not a number", token.text));
    return token;
}

Token Lexer::ReadString(Token token) {
    token.kind = Token::Kind::Literal;
    std::string value;
    Advance();
    while (at_ < text_.size() && At(0) != '"') {
        if (At(0) == '\\' && at_ + 1 < text_.size()) {
            Advance();
            value += Unescaped(At(0));
        } else {
            value += At(0);
        }
        Advance();
    }
    if (at_ >= text_.size()) Fail(token.position, "the string has no end; close it with \"", true);
    Advance();
    token.value = std::move(value);
    return token;
}

Token Lexer::ReadSign(Token token) {
    token.kind = Token::Kind::Sign;
    token.text = text_.substr(at_, SignLength(text_.substr(at_)));
    for (size_t i = 0; i < token.text.size(); ++i) Advance();
    if (token.text.empty())
        Fail(token.position, At(0) == '$' ? "a name is expected after $"
                                          : fmt::format("{} has no meaning here", Shown(At(0))));
    return token;
}

size_t Lexer::WordLength() const {
    size_t length = 0;
    while (IsWordPart(At(length))) ++length;
    return length;
}

char Lexer::NextChar() {
    if (peeked_) {
        at_ = nextAt_;
        position_ = next_.position;
        peeked_ = false;
    }
    SkipBlanks();
    return At(0);
}

bool Lexer::AtWord() {
    return IsWordStart(NextChar());
}

bool Lexer::AtFurtherWord() {
    const char c = NextChar(), behind = At(1);
    if (c == '-') return spacedAt_ == at_ && (IsNamePart(behind) || behind == '.');
    if (c == '<') return behind == '<';
    if (c == '|') return behind != '|';
    return IsNamePart(c) || c == '"' || c == '$' || c == '(';
}

Token Lexer::Word() {
    NextChar();
    Token token;
    token.kind = Token::Kind::Literal;
    token.position = position_;
    token.spaced = spacedAt_ == at_;
    token.text = text_.substr(at_, WordLength());
    for (size_t i = 0; i < token.text.size(); ++i) Advance();
    token.value = ParseNumber(token.text);
    if (token.value.IsNone()) token.value = token.text;
    return token;
}

}  // namespace minihost
