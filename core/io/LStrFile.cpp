#include "core/io/LStrFile.h"

#include <cctype>
#include <charconv>

namespace VantrelSDK {

namespace {

std::string Opened(const char* tag) {
    return std::string("[") + tag + "]";
}

LStrFile::Text TextOf(std::string word) {
    return word == LStrFile::NO_STR_VAL ? LStrFile::Text() : std::move(word);
}

}  // namespace

bool LStrFile::Open(const char* path, const char* mode) {
    file_.reset(std::fopen(path, mode));
    return IsOpen();
}

bool LStrFile::Write(const char* text) {
    return file_ && std::fputs(text, file_.get()) >= 0 && std::fflush(file_.get()) == 0;
}

bool LStrFile::ReadWord(std::string& word) {
    word.clear();
    if (!file_) return false;
    int c = std::fgetc(file_.get());
    while (c != EOF && std::isspace(c)) c = std::fgetc(file_.get());
    for (; c != EOF && !std::isspace(c) && word.size() <= kMaxWord; c = std::fgetc(file_.get()))
        word += static_cast<char>(c);
    // A word that holds a zero would end there for whoever takes it as text.
    return !word.empty() && word.size() <= kMaxWord && word.find('\0') == word.npos;
}

int LStrFile::ReadNumPatternsTag(int& count) {
    std::string word;
    if (!ReadWord(word)) return 0;
    if (word != Opened(NUM_PATTERNS_TAG)) return -1;
    if (!ReadWord(word)) return 0;
    int number = 0;
    const char* end = word.data() + word.size();
    if (const auto [at, error] = std::from_chars(word.data(), end, number);
        error != std::errc() || at != end)
        return 0;
    if (!ReadWord(word)) return 0;
    count = number;
    return 1;
}

int LStrFile::ReadPatternTag(Text& name, Text& field, Text& file) {
    std::string word, fields[3];
    if (!ReadWord(word)) return 0;
    if (word != Opened(PATTERN_TAG)) return -1;
    for (std::string& each : fields)
        if (!ReadWord(each)) return 0;
    if (!ReadWord(word)) return 0;
    for (const std::string& each : fields)
        if (each.empty()) return -2;
    name = TextOf(fields[0]);
    field = TextOf(fields[1]);
    file = TextOf(fields[2]);
    return 1;
}

bool LStrFile::WriteNumPatternsTag(int count) {
    return Write(
        (Opened(NUM_PATTERNS_TAG) + " " + std::to_string(count) + " [/" + NUM_PATTERNS_TAG + "] \n")
            .c_str());
}

bool LStrFile::WritePatternTag(const Text& name, const Text& field, const Text& file) {
    std::string line = Opened(PATTERN_TAG);
    for (const Text* text : {&name, &field, &file}) line += " " + text->value_or(NO_STR_VAL);
    return Write((line + " [/" + PATTERN_TAG + "] \n").c_str());
}

}  // namespace VantrelSDK
