#pragma once

#include <filesystem>
#include <string>

#include "app/session/SessionFolder.h"

namespace minihost {
class Host;
}

namespace kelmo {

/// Keeps what is done in a scene on disk while it is done, so that nothing is lost whatever happens
/// to the program: the scene as it was at some moment, and for each sculpt node a journal of its
/// strokes since.
class SessionKeeper {
  public:
    /// Borrowed; the module is loaded.
    explicit SessionKeeper(minihost::Host& host) : host_(host) {}
    /// What is on disk stays, as after a crash, unless End was called.
    ~SessionKeeper();
    SessionKeeper(const SessionKeeper&) = delete;
    SessionKeeper& operator=(const SessionKeeper&) = delete;

    /// Makes the folder of this session. False with the reason; sculpting goes on without.
    bool Begin(std::string& error);
    bool IsOn() const { return !folder_.empty(); }
    /// Where; empty while nothing is kept.
    const std::filesystem::path& folder() const { return folder_; }
    /// Takes the scene as it is, and begins the journals anew. `file` is what is open, `unsaved`:
    /// the scene holds what is in no file. What was kept before counts until this is on disk. False
    /// with the reason.
    bool Checkpoint(const std::string& file, bool unsaved, std::string& error);
    /// Something was done that the journals do not tell: a checkpoint is due.
    bool IsDue() const;
    /// Why a journal can't be written at the moment; empty when all goes well.
    std::string Problem() const;
    /// Strokes in the journals.
    int NumStrokes() const;
    /// Copies the journals to a file, and for nodes beyond the first to others with ".2" and so on
    /// before the ending. False with the reason.
    bool WriteLogs(const std::string& path, std::string& error) const;
    /// Everything is in the person's files, or given up: nothing is kept.
    void End();

  private:
    std::vector<std::string> Nodes() const;
    std::string Ask(const std::string& what, const std::string& node) const;

    minihost::Host& host_;
    std::filesystem::path folder_;
    FolderLock lock_;
    SessionRecord record_;
    int checkpoints_ = 0;
};

/// Opens what a session left, as the scene, with its strokes. Its file's name is the scene's where
/// that was a scene. False with the reason.
bool RecoverSession(minihost::Host& host, const LeftSession& session, std::string& error);

}  // namespace kelmo
