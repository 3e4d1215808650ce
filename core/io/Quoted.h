#pragma once

#include <string>
#include <string_view>

namespace VantrelSDK {

/// A piece of a file's text as messages show it: in quotation marks, cut short where it is long,
/// with a question mark for every byte that is not printable ASCII.
inline std::string Quoted(std::string_view text) {
    constexpr size_t Longest = 32;
    std::string quoted = "\"";
    for (const char c : text.substr(0, Longest)) quoted += c >= ' ' && c <= '~' ? c : '?';
    return quoted + (text.size() > Longest ? "...\"" : "\"");
}

}  // namespace VantrelSDK
