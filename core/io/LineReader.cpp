#include "core/io/LineReader.h"

namespace VantrelSDK {

bool LineReader::Open(const std::string& path, std::string& error) {
    held_.clear();
    rest_ = {};
    bytesRead_ = 0;
    atEnd_ = !file_.Open(path, error);
    return !atEnd_;
}

LineReader::Result LineReader::Next(std::string_view& line, std::string& error) {
    size_t searched = 0;
    while (true) {
        const size_t end = rest_.find('\n', searched);
        if (end == rest_.npos && !atEnd_) {
            searched = rest_.size();
            if (!Fill(error)) return Result::Failed;
            continue;
        }
        if (rest_.empty()) return Result::End;
        line = rest_.substr(0, end);
        const size_t taken = end == rest_.npos ? rest_.size() : end + 1;
        rest_.remove_prefix(taken);
        bytesRead_ += taken;
        if (line.ends_with('\r')) line.remove_suffix(1);
        return Result::Line;
    }
}

bool LineReader::Fill(std::string& error) {
    constexpr size_t Piece = 1 << 16;
    held_.erase(0, held_.size() - rest_.size());
    const size_t kept = held_.size();
    held_.resize(kept + Piece);
    size_t read = 0;
    const bool ok = file_.Read(held_.data() + kept, Piece, read, error);
    held_.resize(kept + read);
    rest_ = held_;
    atEnd_ = read == 0;
    return ok;
}

}  // namespace VantrelSDK
