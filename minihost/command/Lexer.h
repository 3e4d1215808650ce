#pragma once

#include <string>
#include <string_view>

#include "minihost/command/ScriptError.h"
#include "minihost/command/Value.h"

namespace minihost {

/// A token of an expression, or a word of a command.
struct Token {
    enum class Kind { End, Name, Variable, Literal, Sign };

    Kind kind = Kind::End;
    /// The name (of a variable without its $) or the sign.
    std::string_view text;
    /// Of a literal: an int, float or string.
    Value value;
    Position position;
    /// Whether blanks, a comment or the start of the script came before.
    bool spaced = true;

    bool Is(std::string_view sign) const { return kind == Kind::Sign && text == sign; }
    bool IsName(std::string_view name) const { return kind == Kind::Name && text == name; }
};

/// Cuts a script into tokens. The language has two ways to read: expressions, where `-5` is a sign
/// and a number, and the words of a command, where it is a number and `|group|head.tx` a word. The
/// parser says which it wants next. The text must outlive the lexer and its tokens. Text that
/// can't be read throws ScriptFailure.
class Lexer {
  public:
    Lexer(std::string_view text, std::string_view source) : text_(text), source_(source) {}

    /// The next token of an expression, without taking it.
    const Token& Peek();
    /// Takes the next token of an expression.
    Token Next();

    /// The character that the next word or token begins with; 0 at the end of the script.
    char NextChar();
    /// Right behind NextChar(): whether there were blanks or a comment before.
    bool Spaced() const { return spacedAt_ == at_; }
    /// Whether a bare word of a command comes next: a name, path, pattern, flag or number, and not
    /// a string, variable or bracket.
    bool AtWord();
    /// Whether what comes next, behind a closing bracket, goes on as words of a command and not as
    /// an expression: then a '-' has blanks before and none behind.
    bool AtFurtherWord();
    /// Takes a bare word: a number where all of it is one, else a string.
    Token Word();

    /// Throws ScriptFailure. `atEnd`: whether more text could mend it.
    [[noreturn]] void Fail(const Position& position, std::string message, bool atEnd = false) const;

  private:
    char At(size_t offset) const {
        return at_ + offset < text_.size() ? text_[at_ + offset] : '\0';
    }
    void Advance();
    void SkipBlanks();
    Token Read();
    Token ReadName(Token token);
    Token ReadNumber(Token token);
    Token ReadString(Token token);
    Token ReadSign(Token token);
    /// How many bytes from here on are in a bare word.
    size_t WordLength() const;

    std::string_view text_, source_;
    size_t at_ = 0;
    Position position_;
    /// Where blanks, a comment or the start of the script lie before; the last such place.
    size_t spacedAt_ = 0;
    bool peeked_ = false;
    Token next_;
    /// Where `next_` began, so that it can be read again as a word.
    size_t nextAt_ = 0;
};

}  // namespace minihost
