#include "core/io/StrokeJournal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace VantrelSDK {

namespace {

/// So much is kept for a stroke without making room.
constexpr size_t kRoom = size_t{1} << 20;

std::string Reason(const char* what, const std::string& path) {
    return path + ": " + what + ": " + std::strerror(errno);
}

/// A file's name is on disk when its folder is.
void SyncFolderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

}  // namespace

StrokeJournal::~StrokeJournal() {
    std::string unheard;
    Close(unheard);
}

bool StrokeJournal::Open(const std::string& path, std::string_view header, std::string& error) {
    if (!Close(error)) return false;
    path_ = path;
    file_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file_ < 0) {
        error = Reason("cannot write", path);
        return false;
    }
    good_ = 0;
    problem_.clear();
    chunk_.reserve(kRoom);
    pending_.reserve(kRoom);
    pending_.assign(header).append("\n");
    if (!WriteOut(error)) {
        close(file_);
        file_ = -1;
        return false;
    }
    SyncFolderOf(path);
    stop_ = false;
    thread_ = std::thread(&StrokeJournal::Run, this);
    return true;
}

bool StrokeJournal::Close(std::string& error) {
    if (file_ < 0) return true;
    Commit();
    Join();
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    thread_.join();
    close(file_);
    file_ = -1;
    chunk_.clear();
    error = problem_;
    return problem_.empty();
}

void StrokeJournal::Commit() {
    if (file_ < 0) return chunk_.clear();
    Join();
    if (chunk_.empty() && pending_.empty()) return;
    {
        const std::lock_guard lock(mutex_);
        // What could not be written comes first.
        if (pending_.empty())
            std::swap(pending_, chunk_);
        else
            pending_ += chunk_;
        chunk_.clear();
        work_ = true;
    }
    changed_.notify_all();
}

void StrokeJournal::Join() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !work_; });
}

std::string StrokeJournal::Problem() {
    const std::lock_guard lock(mutex_);
    return problem_;
}

void StrokeJournal::Run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return work_ || stop_; });
        if (!work_) return;
        lock.unlock();
        std::string problem;
        WriteOut(problem);
        lock.lock();
        problem_ = std::move(problem);
        work_ = false;
        changed_.notify_all();
    }
}

/// Puts what is pending behind what is good.
bool StrokeJournal::WriteOut(std::string& error) {
    size_t done = 0;
    while (done < pending_.size()) {
        const ssize_t written = pwrite(file_, pending_.data() + done, pending_.size() - done,
                                       good_ + static_cast<long long>(done));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) break;
        done += static_cast<size_t>(written);
    }
    if (done < pending_.size() || fdatasync(file_) != 0) {
        error = Reason("cannot write", path_);
        return false;
    }
    good_ += static_cast<long long>(pending_.size());
    pending_.clear();
    return true;
}

std::string_view WholeStrokes(std::string_view journal) {
    std::string_view whole = journal.substr(0, journal.find('\n') + 1);
    bool inStroke = false;
    for (size_t at = whole.size(), end; (end = journal.find('\n', at)) != journal.npos;
         at = end + 1) {
        const std::string_view line = journal.substr(at, end - at);
        if (line.starts_with("{\"op\":\"press\"")) inStroke = true;
        if (line.starts_with("{\"op\":\"release\"")) inStroke = false;
        if (!inStroke) whole = journal.substr(0, end + 1);
    }
    return whole;
}

}  // namespace VantrelSDK
