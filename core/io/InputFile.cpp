#include "core/io/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace VantrelSDK {

InputFile::~InputFile() {
    if (fd_ >= 0) close(fd_);
}

bool InputFile::Open(const std::string& path, std::string& error) {
    if (fd_ >= 0) close(fd_);
    fd_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info {};
    if (fd_ < 0 || fstat(fd_, &info) != 0) {
        error = std::string("cannot open: ") + std::strerror(errno);
        return false;
    }
    if (!S_ISREG(info.st_mode) && !S_ISFIFO(info.st_mode)) {
        error = S_ISDIR(info.st_mode) ? "this is a directory" : "this is not a regular file";
        close(fd_);
        fd_ = -1;
        return false;
    }
    size_ = static_cast<size_t>(info.st_size);
    return true;
}

bool InputFile::Read(char* to, size_t size, size_t& read, std::string& error) {
    ssize_t got;
    do got = ::read(fd_, to, size);
    while (got < 0 && errno == EINTR);
    read = static_cast<size_t>(std::max<ssize_t>(got, 0));
    if (got < 0) error = std::string("cannot read: ") + std::strerror(errno);
    return got >= 0;
}

bool ReadWholeFile(const std::string& path, FileBytes& bytes, std::string& error) {
    InputFile file;
    if (!file.Open(path, error)) return false;
    // One byte more than the size, so that the read that finds the end needs no second buffer.
    size_t capacity = std::max<size_t>(file.Size() + 1, 1 << 16), size = 0, read = 0;
    auto data = std::make_unique_for_overwrite<char[]>(capacity);
    while (true) {
        if (!file.Read(data.get() + size, capacity - size, read, error)) return false;
        if (read == 0) break;
        size += read;
        if (size < capacity) continue;
        auto larger = std::make_unique_for_overwrite<char[]>(capacity * 2);
        std::memcpy(larger.get(), data.get(), size);
        data = std::move(larger);
        capacity *= 2;
    }
    bytes.data = std::move(data);
    bytes.size = size;
    return true;
}

}  // namespace VantrelSDK
