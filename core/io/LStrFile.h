#pragma once

#include <cstdio>
#include <memory>

namespace VantrelSDK {

/// A text file that is written line by line, each on the disk at once, so that what came before a
/// crash can be read after it.
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

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace VantrelSDK
