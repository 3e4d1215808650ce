#pragma once

#include <string>
#include <string_view>

namespace VantrelSDK {

/// Writes a file whole or not at all: the text goes to a temporary file beside the target, which is
/// renamed into place when all of it is on the disk. Until then, and after any failure, the old
/// file stays as it was and nothing is left beside it.
///
/// A symbolic link stays a link, its target is written. A pipe or a device is written directly.
class AtomicFile {
  public:
    AtomicFile() = default;
    /// Drops what was written when Commit was not called or failed.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// All three return false with a message on failure; the file is then given up.
    bool Open(const std::string& path, std::string& error);
    bool Write(std::string_view text, std::string& error);
    bool Commit(std::string& error);

  private:
    bool Fail(const char* what, std::string& error);
    void Discard();

    int fd_ = -1;
    std::string target_;
    /// Empty when the target is written directly.
    std::string temporary_;
};

}  // namespace VantrelSDK
