#include "app/window/MessageLog.h"

namespace kelmo {

namespace {

constexpr size_t kMost = 500;

std::string Trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(" \n\t");
    if (first == text.npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(" \n\t") - first + 1));
}

}  // namespace

void MessageLog::Add(Kind kind, std::string_view text) {
    std::string trimmed = Trimmed(text);
    if (trimmed.empty()) return;
    messages_.push_back({kind, std::move(trimmed)});
    if (messages_.size() > kMost) messages_.pop_front();
    ++count_;
}

void MessageLog::Print(std::string_view text) {
    // Prints need not be whole lines.
    open_ += text;
    for (size_t end = open_.find('\n'); end != open_.npos; end = open_.find('\n')) {
        Add(Kind::Text, std::string_view(open_).substr(0, end));
        open_.erase(0, end + 1);
    }
}

void MessageLog::Warning(std::string_view text) {
    ScriptOutput::Warning(text);
    Add(Kind::Warning, text);
}

void MessageLog::Error(std::string_view text) {
    ScriptOutput::Error(text);
    Add(Kind::Error, text);
}

}  // namespace kelmo
