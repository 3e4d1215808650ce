#pragma once

#include <string>

/// Keys by the numbers that X gives them.
namespace kelmo::keys {

inline constexpr unsigned long kBackspace = 0xff08, kTab = 0xff09, kEnter = 0xff0d,
                               kEscape = 0xff1b, kHome = 0xff50, kLeft = 0xff51, kUp = 0xff52,
                               kRight = 0xff53, kDown = 0xff54, kPageUp = 0xff55,
                               kPageDown = 0xff56, kEnd = 0xff57, kInsert = 0xff63,
                               kKeypadEnter = 0xff8d, kF1 = 0xffbe, kDelete = 0xffff,
                               kShift = 0xffe1, kRightShift = 0xffe2;

/// The key of a letter, whether capital or not.
constexpr unsigned long Plain(unsigned long key) {
    return key >= 'A' && key <= 'Z' ? key - 'A' + 'a' : key;
}

/// A key with what is held, as it is shown: "Ctrl+Shift+Z", "PageUp", "[".
struct Chord {
    unsigned long key = 0;
    bool control = false, shift = false;
    bool operator==(const Chord&) const = default;
};
/// Key 0 for a text that is none.
Chord Parse(const std::string& text);

}  // namespace kelmo::keys
