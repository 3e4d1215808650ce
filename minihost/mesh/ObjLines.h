#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace minihost {

/// Goes through a text line by line and word by word. A "#" ends a line, a "\" at its end continues
/// it.
class ObjLines {
  public:
    explicit ObjLines(std::string_view text) : p_(text.data()), end_(p_ + text.size()) {}

    /// Moves to the next line that has a word; false at the end.
    bool Next();
    /// The next word of the line; empty at its end.
    std::string_view Word();
    /// The rest of the line, without blanks around it.
    std::string_view Rest();
    size_t line() const { return line_; }

    /// The next word as a number; false where it is none that a float holds.
    bool Number(float& number);
    /// "12: reason", and false.
    bool Fail(std::string& error, const std::string& reason) const;

  private:
    void SkipBlanks();
    bool AtContinuation() const;
    bool AtEnd() const { return p_ == end_ || *p_ == '\n' || *p_ == '#'; }

    const char *p_, *end_;
    size_t line_ = 0, extra_ = 0;
    bool started_ = false;
};

}  // namespace minihost
