#include "maya/MString.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "maya/MStringArray.h"

namespace {

/// Reads a number in front of white space only; false where the text is anything else.
template <class T>
bool ReadWhole(const std::string& text, T& value) {
    const char* at = text.data();
    const char* end = at + text.size();
    while (at != end && std::isspace(static_cast<unsigned char>(*at))) ++at;
    if (at != end && *at == '+') ++at;
    const auto [rest, error] = std::from_chars(at, end, value);
    return error == std::errc() &&
           std::all_of(rest, end, [](unsigned char c) { return std::isspace(c); });
}

}  // namespace

MString& MString::operator+=(double value) {
    char buffer[32];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 10);
    text_.append(buffer, error == std::errc() ? end : buffer);
    return *this;
}

MString MString::substring(int start, int end) const {
    start = std::max(start, 0);
    if (start >= static_cast<int>(text_.size()) || end < start) return MString();
    return MString(text_.substr(static_cast<size_t>(start), static_cast<size_t>(end - start) + 1));
}

MStatus MString::split(char separator, MStringArray& parts) const {
    parts.clear();
    for (size_t at = 0; at < text_.size();) {
        const size_t end = std::min(text_.find(separator, at), text_.size());
        if (end > at) parts.append(MString(text_.substr(at, end - at)));
        at = end + 1;
    }
    return MS::kSuccess;
}

int MString::asInt() const {
    int value = 0;
    if (ReadWhole(text_, value)) return value;
    const double number = asDouble();
    return std::abs(number) < 2147483648.0 ? static_cast<int>(number) : 0;
}

double MString::asDouble() const {
    double value = 0;
    return ReadWhole(text_, value) ? value : 0;
}

bool MString::isInt() const {
    int value = 0;
    return ReadWhole(text_, value);
}

bool MString::isDouble() const {
    double value = 0;
    return ReadWhole(text_, value);
}

MString& MString::toLowerCase() {
    for (char& c : text_) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return *this;
}

MString& MString::toUpperCase() {
    for (char& c : text_) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return *this;
}
