#include "minihost/mesh/ObjLines.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace minihost {

bool ObjLines::AtContinuation() const {
    if (p_ == end_ || *p_ != '\\') return false;
    const size_t left = static_cast<size_t>(end_ - p_);
    return (left > 1 && p_[1] == '\n') || (left > 2 && p_[1] == '\r' && p_[2] == '\n');
}

void ObjLines::SkipBlanks() {
    while (p_ < end_) {
        if (AtContinuation()) {
            p_ += p_[1] == '\n' ? 2 : 3;
            ++extra_;
        } else if (*p_ == ' ' || *p_ == '\t' || *p_ == '\r') {
            ++p_;
        } else {
            return;
        }
    }
}

bool ObjLines::Next() {
    while (true) {
        if (started_) {
            const void* newline = std::memchr(p_, '\n', static_cast<size_t>(end_ - p_));
            if (!newline) return false;
            p_ = static_cast<const char*>(newline) + 1;
        }
        started_ = true;
        line_ += 1 + extra_;
        extra_ = 0;
        SkipBlanks();
        if (p_ == end_) return false;
        if (!AtEnd()) return true;
    }
}

std::string_view ObjLines::Word() {
    SkipBlanks();
    const char* start = p_;
    while (!AtEnd() && *p_ != ' ' && *p_ != '\t' && *p_ != '\r' && !AtContinuation()) ++p_;
    return {start, static_cast<size_t>(p_ - start)};
}

std::string_view ObjLines::Rest() {
    SkipBlanks();
    const char* start = p_;
    while (p_ < end_ && *p_ != '\n') ++p_;
    std::string_view rest(start, static_cast<size_t>(p_ - start));
    while (!rest.empty() && std::strchr(" \t\r", rest.back())) rest.remove_suffix(1);
    return rest;
}

bool ObjLines::Number(float& number) {
    std::string_view word = Word();
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
    const char* end = word.data() + word.size();
    const auto [behind, wrong] = std::from_chars(word.data(), end, number);
    if (wrong == std::errc::result_out_of_range && behind == end) {
        double wide = 1;  // what a float is too coarse for is 0
        std::from_chars(word.data(), end, wide);
        number = 0;
        return std::abs(wide) < 1e-30;
    }
    return wrong == std::errc() && behind == end && std::isfinite(number);
}

bool ObjLines::Fail(std::string& error, const std::string& reason) const {
    error = std::to_string(line_) + ": " + reason;
    return false;
}

}  // namespace minihost
