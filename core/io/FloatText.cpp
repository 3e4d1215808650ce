#include "core/io/FloatText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace VantrelSDK {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// True when the decimal number of the text is below 1. A number out of a float's range is so far
/// from 1 that the place of its first digit and the exponent decide.
bool IsBelowOne(const char* p, const char* last) {
    long long place = 0;  // the decimal exponent of the first digit that is not 0, plus 1
    bool started = false, fraction = false;
    for (; p < last && (IsDigit(*p) || *p == '.'); ++p) {
        if (*p == '.') {
            fraction = true;
            continue;
        }
        started |= *p != '0';
        if (started && !fraction) ++place;
        if (!started && fraction) --place;
    }
    if (p == last) return place <= 0;
    ++p;  // the e
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    long long exponent = 0;
    const bool fits = std::from_chars(p, last, exponent).ec == std::errc();
    if (!fits || exponent > 1ll << 60) return negative;
    return place + (negative ? -exponent : exponent) <= 0;
}

/// The end of "-e2" or "+e2" at p, or null.
const char* EndOfSwappedExponent(const char* p, const char* last) {
    if (last - p < 3 || (*p != '+' && *p != '-') || (p[1] != 'e' && p[1] != 'E') || !IsDigit(p[2]))
        return nullptr;
    return std::find_if_not(p + 2, last, IsDigit);
}

}  // namespace

std::from_chars_result ParseFloat(const char* first, const char* last, float& value) {
    if (last - first > 1 && *first == '+' && first[1] != '-') ++first;
    std::from_chars_result result = std::from_chars(first, last, value);
    if (result.ec == std::errc::result_out_of_range) {
        const bool negative = *first == '-';
        if (IsBelowOne(first + negative, result.ptr)) {
            value = negative ? -0.0f : 0.0f;
            result.ec = std::errc();
        }
    } else if (result.ec == std::errc() && !std::isfinite(value)) {
        result.ec = std::errc::result_out_of_range;
    } else if (result.ec == std::errc()) {
        if (const char* end = EndOfSwappedExponent(result.ptr, last)) {
            std::string text(first, result.ptr);
            text.append({'e', *result.ptr}).append(result.ptr + 2, end);
            const char* textEnd = text.data() + text.size();
            const std::from_chars_result swapped = ParseFloat(text.data(), textEnd, value);
            if (swapped.ptr == textEnd) return {end, swapped.ec};
            std::from_chars(first, last, value);
        }
    }
    return result;
}

}  // namespace VantrelSDK
