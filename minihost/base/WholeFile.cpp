#include "minihost/base/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

namespace minihost {
namespace {

struct Close {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, Close>;

bool Fail(const char* what, const std::string& path, std::string& error) {
    error = std::string("cannot ") + what + " '" + path + "': " + std::strerror(errno);
    return false;
}

/// Creates a file of a name that did not exist, with the rights that the user's umask gives.
int CreateBeside(const std::string& target, std::string& name) {
    int fd = -1;
    for (int i = 0; i < 100 && fd < 0 && (i == 0 || errno == EEXIST); ++i) {
        name = target + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(i);
        fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    }
    return fd;
}

bool WriteAll(File file, std::string_view content) {
    const bool written =
        std::fwrite(content.data(), 1, content.size(), file.get()) == content.size() &&
        std::fflush(file.get()) == 0 && (fsync(fileno(file.get())) == 0 || errno == EINVAL);
    return std::fclose(file.release()) == 0 && written;
}

}  // namespace

bool ReadWholeFile(const std::string& path, std::string& content, std::string& error) {
    const File file(std::fopen(path.c_str(), "rbe"));
    if (!file) return Fail("open", path, error);
    struct stat info {};
    if (fstat(fileno(file.get()), &info) == 0 && S_ISREG(info.st_mode))
        content.reserve(static_cast<size_t>(info.st_size));
    char block[1 << 16];
    content.clear();
    for (size_t n; (n = std::fread(block, 1, sizeof block, file.get())) > 0;)
        content.append(block, n);
    return !std::ferror(file.get()) || Fail("read", path, error);
}

bool WriteWholeFile(const std::string& path, std::string_view content, std::string& error) {
    std::error_code none;
    std::string target = std::filesystem::weakly_canonical(path, none).string();
    if (none || target.empty()) target = path;
    struct stat old {};
    const bool exists = stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {  // a device, a pipe: there is nothing to be replaced
        File file(std::fopen(target.c_str(), "wbe"));
        return (file && WriteAll(std::move(file), content)) || Fail("write", path, error);
    }
    std::string beside;
    const int fd = CreateBeside(target, beside);
    if (fd < 0) return Fail("write", path, error);
    // The new file keeps the rights of the old, where that is allowed.
    if (exists && fchmod(fd, old.st_mode & 0777) != 0) errno = 0;
    const bool done = WriteAll(File(fdopen(fd, "wb")), content) &&
                      std::rename(beside.c_str(), target.c_str()) == 0;
    if (done) return true;
    Fail("write", path, error);
    unlink(beside.c_str());
    return false;
}

}  // namespace minihost
