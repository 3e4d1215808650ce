#include "app/window/Keys.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelmo::keys {

namespace {

constexpr std::pair<const char*, unsigned long> kNamed[] = {
    {"PageUp", kPageUp}, {"PageDown", kPageDown}, {"Delete", kDelete}, {"Home", kHome},
    {"Escape", kEscape}, {"Tab", kTab},           {"Space", ' '},      {"F1", kF1},
    {"F2", kF1 + 1},     {"F3", kF1 + 2},         {"F4", kF1 + 3},
};

bool Take(std::string& text, const std::string& front) {
    if (!text.starts_with(front)) return false;
    text.erase(0, front.size());
    return true;
}

}  // namespace

Chord Parse(const std::string& text) {
    Chord chord;
    std::string rest = text;
    chord.control = Take(rest, "Ctrl+");
    chord.shift = Take(rest, "Shift+");
    const auto* named =
        std::ranges::find(kNamed, rest, [](const auto& pair) { return std::string(pair.first); });
    if (named != std::end(kNamed))
        chord.key = named->second;
    else if (rest.size() == 1)
        chord.key = Plain(static_cast<unsigned char>(rest[0]));
    return chord;
}

}  // namespace kelmo::keys
