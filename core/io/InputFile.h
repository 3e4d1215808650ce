#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace VantrelSDK {

/// A file open for reading: a regular one or a pipe. A device is refused, for it may never end.
class InputFile {
  public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// False with a message when the file can't be opened.
    bool Open(const std::string& path, std::string& error);
    /// The size in bytes where it is known beforehand, else 0.
    size_t Size() const { return size_; }
    /// Reads up to `size` bytes; `read` is 0 only at the end. False with a message when it fails.
    bool Read(char* to, size_t size, size_t& read, std::string& error);

  private:
    int fd_ = -1;
    size_t size_ = 0;
};

/// All bytes of a file, in memory of that size.
struct FileBytes {
    std::unique_ptr<char[]> data;
    size_t size = 0;

    std::string_view View() const { return {data.get(), size}; }
};

/// False with a message when the file can't be read; `bytes` is then unchanged. Throws
/// std::bad_alloc when the file is larger than the memory.
bool ReadWholeFile(const std::string& path, FileBytes& bytes, std::string& error);

}  // namespace VantrelSDK
