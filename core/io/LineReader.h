#pragma once

#include <string>
#include <string_view>

#include "core/io/InputFile.h"

namespace VantrelSDK {

/// Gives the lines of a file or of a text one by one; of a file it holds one line and a bit more.
class LineReader {
  public:
    enum class Result { Line, End, Failed };

    /// Reads nothing until Open.
    LineReader() = default;
    /// The text stays the caller's and must outlive the reader.
    explicit LineReader(std::string_view text) : rest_(text) {}
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// False with a message when the file can't be opened.
    bool Open(const std::string& path, std::string& error);
    /// The next line without its "\n" or "\r\n", valid until the next call. A last line may lack
    /// its end. Failed comes with a message. Throws std::bad_alloc for a line larger than memory.
    Result Next(std::string_view& line, std::string& error);

    /// Bytes of the lines that Next has given, their ends included.
    size_t BytesRead() const { return bytesRead_; }

  private:
    bool Fill(std::string& error);

    InputFile file_;
    bool atEnd_ = true;
    std::string held_;
    std::string_view rest_;
    size_t bytesRead_ = 0;
};

}  // namespace VantrelSDK
