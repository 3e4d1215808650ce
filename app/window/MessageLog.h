#pragma once

#include <deque>
#include <string>

#include "minihost/command/ScriptOutput.h"

namespace kelmo {

/// What the host tells, kept to be read in the window; warnings and errors go to standard error
/// too.
class MessageLog : public minihost::ScriptOutput {
  public:
    enum class Kind { Text, Warning, Error };
    struct Message {
        Kind kind;
        std::string text;
    };

    void Print(std::string_view text) override;
    void Info(std::string_view text) override { Add(Kind::Text, text); }
    void Warning(std::string_view text) override;
    void Error(std::string_view text) override;

    const std::deque<Message>& messages() const { return messages_; }
    /// The last one; null while there is none.
    const Message* last() const { return messages_.empty() ? nullptr : &messages_.back(); }
    /// How many came since the program began.
    size_t count() const { return count_; }

  private:
    void Add(Kind kind, std::string_view text);

    std::deque<Message> messages_;
    std::string open_;
    size_t count_ = 0;
};

}  // namespace kelmo
