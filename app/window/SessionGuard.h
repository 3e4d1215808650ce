#pragma once

#include <string>
#include <vector>

#include "app/session/SessionKeeper.h"
#include "app/window/Workspace.h"

namespace kelmo {

/// Keeps what is done in the window on disk while it is done, tells when that can't be, and brings
/// back what a crash left.
class SessionGuard {
  public:
    explicit SessionGuard(Workspace& work) : work_(work) {}

    /// From now on; looks for what was left. With `record` everything goes to one log: see Finish.
    void Begin(bool record);
    /// After what has come was done, and not inside a stroke.
    void Follow();
    /// Sessions that may be brought back.
    const std::vector<LeftSession>& left() const { return left_; }
    /// Opens one in the place of the scene; it is then unsaved work of this session.
    bool BringBack(size_t index);
    void Forget(size_t index);
    /// The person has saved or given up everything. Writes the strokes to `log` (empty: nowhere),
    /// of further nodes beside it. False with the reason.
    bool Finish(const std::string& log, std::string& error);

  private:
    void Take(bool unsaved);
    void Tell(const std::string& problem);

    Workspace& work_;
    SessionKeeper keeper_{minihost::Host::Get()};
    std::vector<LeftSession> left_;
    std::string told_;
    bool record_ = false;
};

}  // namespace kelmo
