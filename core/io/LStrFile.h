#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace VantrelSDK {

/// A text file. It is written line by line, each on the disk at once, so that what came before a
/// crash can be read after it; lists are read as words between blanks.
class LStrFile {
  public:
    LStrFile() = default;
    LStrFile(const LStrFile&) = delete;
    LStrFile& operator=(const LStrFile&) = delete;

    /// The mode is that of fopen; a file that was open is closed. False when it can't be opened.
    bool Open(const char* path, const char* mode);
    void Close() { file_.reset(); }
    bool IsOpen() const { return file_ != nullptr; }
    /// False when it is not open or could not be written.
    bool Write(const char* text);

    // Lists of patterns: how many there are, then a record of each, between tags in brackets.

    static constexpr const char* NUM_PATTERNS_TAG = "num_patterns";
    static constexpr const char* PATTERN_TAG = "pattern";
    /// Stands for a text that is absent.
    static constexpr const char* NO_STR_VAL = "###";
    /// No word is longer.
    static constexpr size_t kMaxWord = 299;
    using Text = std::optional<std::string>;

    /// 1; -1 for another tag; 0 where the file ends or says no number.
    int ReadNumPatternsTag(int& count);
    /// 1; -1 for another tag; 0 where the file ends or a word is too long; -2 for an empty word.
    /// Texts that are absent are none. What is read is changed only by 1.
    int ReadPatternTag(Text& name, Text& field, Text& file);
    bool WriteNumPatternsTag(int count);
    bool WritePatternTag(const Text& name, const Text& field, const Text& file);

  private:
    /// The next word; false at the end and for one that is too long.
    bool ReadWord(std::string& word);

    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace VantrelSDK
