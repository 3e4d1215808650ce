#include "minihost/image/XpmFile.h"

#include <cstdio>
#include <map>

#include "minihost/base/WholeFile.h"

namespace minihost {

namespace {

/// The letters that stand for a colour: three of 64 each.
std::string Letters(int number) {
    std::string letters;
    for (int i = 0; i < 3; ++i, number /= 64) letters += static_cast<char>('#' + number % 64);
    for (char& letter : letters)
        if (letter == '\\') letter = '~';
    return letters;
}

}  // namespace

std::string WriteXpm(const std::string& path, const Picture& picture) {
    if (picture.channels < 3) return path + ": an X pixmap is of colours";
    std::map<int, int> numbers;
    std::string colors, rows;
    for (int y = 0; y < picture.height; ++y) {
        rows += ",\n\"";
        for (int x = 0; x < picture.width; ++x) {
            const auto* p = &picture.pixels[static_cast<size_t>(y) * picture.RowBytes() +
                                            static_cast<size_t>(x * picture.channels)];
            const int color = p[0] << 16 | p[1] << 8 | p[2];
            const auto [found, fresh] =
                numbers.try_emplace(color, static_cast<int>(numbers.size()));
            rows += Letters(found->second);
            if (!fresh) continue;
            char line[40];
            std::snprintf(line, sizeof line, ",\n\"%s c #%06X\"", Letters(found->second).c_str(),
                          static_cast<unsigned>(color));
            colors += line;
        }
        rows += '"';
    }
    const std::string size = std::to_string(picture.width) + " " + std::to_string(picture.height) +
                             " " + std::to_string(numbers.size()) + " 3";
    std::string error;
    WriteWholeFile(
        path, "/* XPM */\nstatic char* swatch[] = {\n\"" + size + "\"" + colors + rows + "};\n",
        error);
    return error;
}

}  // namespace minihost
