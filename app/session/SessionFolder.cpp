#include "app/session/SessionFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "core/io/AtomicFile.h"
#include "core/io/StrokeJournal.h"

namespace kelmo {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

constexpr const char* kRecord = "session.json";

std::string TextOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int CountStrokes(const fs::path& log) {
    const std::string text = TextOf(log);
    const std::string_view whole = VantrelSDK::WholeStrokes(text),
                           release = "\n{\"op\":\"release\"";
    int count = 0;
    for (size_t at = 0; (at = whole.find(release, at)) != whole.npos; at += release.size()) ++count;
    return count;
}

/// A name in the folder, and no way out of it.
bool IsPlainName(const std::string& name) {
    return !name.empty() && fs::path(name).filename() == name && name != "." && name != "..";
}

std::vector<fs::path> SessionFolders() {
    std::vector<fs::path> folders;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(SessionsFolder(), none))
        if (entry.is_directory(none)) folders.push_back(entry.path());
    std::ranges::sort(folders, std::greater());
    return folders;
}

}  // namespace

bool SessionRecord::Write(const fs::path& folder, std::string& error) const {
    json record{{"kelmo", "session"},       {"version", 1},   {"file", file},
                {"began", began},           {"scene", scene}, {"unsaved", unsaved},
                {"journals", json::array()}};
    for (const Journal& journal : journals)
        record["journals"].push_back({{"node", journal.node}, {"log", journal.log}});
    VantrelSDK::AtomicFile out;
    return out.Open(folder / kRecord, error) &&
           out.Write(record.dump(1, ' ', false, json::error_handler_t::replace) + "\n", error) &&
           out.Commit(error);
}

bool SessionRecord::Read(const fs::path& folder, std::string& error) {
    const json read = json::parse(TextOf(folder / kRecord), nullptr, false);
    const auto text = [](const json& object, const char* name) {
        const auto found = object.find(name);
        return found != object.end() && found->is_string() ? found->get<std::string>() : "";
    };
    if (!read.is_object() || text(read, "kelmo") != "session") {
        error = (folder / kRecord).string() + ": this is not the record of a session";
        return false;
    }
    *this = {text(read, "file"), text(read, "began"), text(read, "scene"), false, {}};
    unsaved = read.value("unsaved", json(false)) == true;
    const auto list = read.find("journals");
    for (const json& journal : list != read.end() && list->is_array() ? *list : json::array()) {
        if (!journal.is_object()) continue;
        const Journal one{text(journal, "node"), text(journal, "log")};
        if (!one.node.empty() && IsPlainName(one.log)) journals.push_back(one);
    }
    if (!scene.empty() && !IsPlainName(scene)) scene.clear();
    return true;
}

bool FolderLock::Take(const fs::path& folder) {
    Release();
    file_ = open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file_ >= 0 && flock(file_, LOCK_EX | LOCK_NB) == 0) return true;
    Release();
    return false;
}

void FolderLock::Release() {
    if (file_ >= 0) close(file_);
    file_ = -1;
}

fs::path SessionsFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    const fs::path base =
        state && *state == '/' ? fs::path(state) : fs::path(home ? home : "/tmp") / ".local/state";
    return base / "kelmo" / "sessions";
}

std::vector<LeftSession> FindLeftSessions() {
    std::vector<LeftSession> left;
    for (const fs::path& folder : SessionFolders()) {
        FolderLock lock;
        if (!lock.Take(folder)) continue;
        LeftSession session{folder, {}, 0};
        std::string error;
        if (session.record.Read(folder, error))
            for (const auto& journal : session.record.journals)
                session.strokes += CountStrokes(folder / journal.log);
        if (!session.record.scene.empty() && (session.strokes > 0 || session.record.unsaved))
            left.push_back(std::move(session));
        else
            ForgetSession(session);
    }
    return left;
}

std::string PlaceOf(const std::string& file) {
    std::error_code failed;
    const fs::path place = fs::weakly_canonical(file, failed);
    return file.empty() || failed ? file : place.string();
}

bool IsOpenElsewhere(const std::string& file, const fs::path& own) {
    for (const fs::path& folder : SessionFolders()) {
        FolderLock lock;
        if (folder == own || lock.Take(folder)) continue;
        SessionRecord record;
        std::string error;
        if (record.Read(folder, error) && record.file == PlaceOf(file)) return true;
    }
    return false;
}

void ForgetSession(const LeftSession& session) {
    std::error_code ignored;
    fs::remove_all(session.folder, ignored);
}

}  // namespace kelmo
