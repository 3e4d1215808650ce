#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelmo {

/// What a session keeps on disk, in session.json of its folder.
struct SessionRecord {
    struct Journal {
        /// The node's name, and the file of its strokes in the folder.
        std::string node, log;
    };

    /// What is open, an absolute path; empty for what has no file yet.
    std::string file;
    /// When the session began, in local time, for people.
    std::string began;
    /// The scene that the journals go on from, a file in the folder; empty before there is one.
    std::string scene;
    /// The scene holds something that is in no file of the person's.
    bool unsaved = false;
    std::vector<Journal> journals;

    /// Writes it whole or not at all. False with the reason.
    bool Write(const std::filesystem::path& folder, std::string& error) const;
    /// False with the reason.
    bool Read(const std::filesystem::path& folder, std::string& error);
};

/// The lock of a folder, held for as long as a program works in it.
class FolderLock {
  public:
    FolderLock() = default;
    ~FolderLock() { Release(); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// False where another program holds it, or it can't be made.
    bool Take(const std::filesystem::path& folder);
    void Release();

  private:
    int file_ = -1;
};

/// Where sessions are kept: kelmo/sessions in the folder that the desktop's conventions name for
/// the state of programs (XDG_STATE_HOME, or ~/.local/state).
std::filesystem::path SessionsFolder();

/// A session whose program is gone without having closed it.
struct LeftSession {
    std::filesystem::path folder;
    SessionRecord record;
    /// Whole strokes in its journals.
    int strokes = 0;

    std::string id() const { return folder.filename(); }
};

/// All that have something to recover, the newest first. Takes away those that have nothing.
std::vector<LeftSession> FindLeftSessions();
/// A running program whose session is in another folder than `own` has this file open.
bool IsOpenElsewhere(const std::string& file, const std::filesystem::path& own);
/// A file's path as sessions keep it.
std::string PlaceOf(const std::string& file);
/// For good.
void ForgetSession(const LeftSession& session);

}  // namespace kelmo
