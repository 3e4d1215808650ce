#include "app/window/SessionGuard.h"

#include <fmt/core.h>

#include "minihost/Host.h"

namespace kelmo {

using minihost::Host;

void SessionGuard::Begin(bool record) {
    record_ = record;
    left_ = FindLeftSessions();
    std::string error;
    if (!keeper_.Begin(error)) Tell(error);
    work_.opened = [this](const std::string& path) {
        if (IsOpenElsewhere(path, keeper_.folder()))
            Host::Get().output().Warning(
                path + " is open in another window too: the one that saves last wins");
        Take(false);
    };
    // A recording goes on, whatever is saved.
    work_.saved = [this](const std::string&) {
        if (!record_) Take(false);
    };
}

void SessionGuard::Take(bool unsaved) {
    const std::string& file = work_.path().empty() ? work_.source() : work_.path();
    if (record_ && keeper_.NumStrokes() > 0)
        Host::Get().output().Warning(
            "the recording begins anew: what was done can't be told by strokes");
    std::string error;
    Tell(keeper_.Checkpoint(file, unsaved, error) ? keeper_.Problem() : error);
}

void SessionGuard::Follow() {
    if (keeper_.IsDue())
        Take(true);
    else
        Tell(keeper_.Problem());
}

/// Each problem once, and when it is over.
void SessionGuard::Tell(const std::string& problem) {
    if (problem == told_) return;
    if (problem.empty())
        Host::Get().output().Info("strokes are kept on disk again");
    else
        Host::Get().output().Error(
            problem + "; sculpting goes on, but a crash would lose it: make room, or save");
    told_ = problem;
}

bool SessionGuard::BringBack(size_t index) {
    const LeftSession session = left_.at(index);
    RunScript("setToolTo selectSuperContext", false);
    std::string error;
    const bool done = RecoverSession(Host::Get(), session, error);
    if (!done) Host::Get().output().Error(session.id() + ": " + error);
    const std::string& file = session.record.file;
    const std::string& scene = Host::Get().file.path;
    work_.Adopt(scene, scene.empty() ? file : "");
    Take(true);
    if (!done || !told_.empty()) return done;
    Host::Get().output().Info(fmt::format("{} strokes are back; save them", session.strokes));
    Forget(index);
    return true;
}

void SessionGuard::Forget(size_t index) {
    ForgetSession(left_.at(index));
    left_.erase(left_.begin() + static_cast<std::ptrdiff_t>(index));
}

bool SessionGuard::Finish(const std::string& log, std::string& error) {
    const bool written = log.empty() || keeper_.WriteLogs(log, error);
    if (written) keeper_.End();
    return written;
}

}  // namespace kelmo
