#include "core/io/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace VantrelSDK {

namespace {

/// The file that a path stands for, links followed; also when it does not exist yet.
std::string Resolve(const std::string& path) {
    std::error_code ignored;
    const auto resolved = std::filesystem::weakly_canonical(path, ignored);
    return ignored || resolved.empty() ? path : resolved.string();
}

/// Creates a file of a name that did not exist, with the rights that the user's umask gives.
int CreateBeside(const std::string& target, std::string& name) {
    for (int i = 0; i < 100; ++i) {
        name = target + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(i);
        const int fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

}  // namespace

AtomicFile::~AtomicFile() {
    Discard();
}

void AtomicFile::Discard() {
    if (fd_ >= 0) close(fd_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
    fd_ = -1;
    temporary_.clear();
}

bool AtomicFile::Fail(const char* what, std::string& error) {
    error = std::string(what) + ": " + std::strerror(errno);
    Discard();
    return false;
}

bool AtomicFile::Open(const std::string& path, std::string& error) {
    Discard();
    target_ = Resolve(path);
    struct stat old {};
    const bool exists = stat(target_.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) {
        errno = EISDIR;
        return Fail("cannot write", error);
    }
    if (exists && !S_ISREG(old.st_mode)) {
        fd_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        std::string name;
        fd_ = CreateBeside(target_, name);
        if (fd_ >= 0) temporary_ = std::move(name);
    }
    if (fd_ < 0) return Fail("cannot write", error);
    // The new file keeps the rights of the old; where that is not allowed, the umask's are right.
    if (exists && !temporary_.empty() && fchmod(fd_, old.st_mode & 0777) != 0) errno = 0;
    return true;
}

bool AtomicFile::Write(std::string_view text, std::string& error) {
    while (!text.empty()) {
        const ssize_t written = write(fd_, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return Fail("cannot write", error);
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool AtomicFile::Commit(std::string& error) {
    if (!temporary_.empty() && fsync(fd_) != 0) return Fail("cannot write", error);
    const int fd = std::exchange(fd_, -1);
    if (close(fd) != 0) return Fail("cannot write", error);
    if (temporary_.empty()) return true;
    if (rename(temporary_.c_str(), target_.c_str()) != 0) return Fail("cannot replace", error);
    temporary_.clear();
    return true;
}

}  // namespace VantrelSDK
