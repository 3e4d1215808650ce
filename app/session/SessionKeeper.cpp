#include "app/session/SessionKeeper.h"

#include <fmt/chrono.h>
#include <fmt/core.h>
#include <unistd.h>

#include <ctime>

#include "app/cli/ModuleHost.h"
#include "minihost/Host.h"
#include "minihost/base/WholeFile.h"
#include "minihost/scene/SceneFile.h"

namespace kelmo {

namespace fs = std::filesystem;

SessionKeeper::~SessionKeeper() {
    if (!IsOn()) return;
    for (const std::string& node : Nodes())
        host_.interpreter.Execute("KelmoJournal -stop " + ScriptText(node));
}

bool SessionKeeper::Begin(std::string& error) {
    const std::tm now = fmt::localtime(std::time(nullptr));
    record_ = {};
    record_.began = fmt::format("{:%Y-%m-%d %H:%M}", now);
    const fs::path sessions = SessionsFolder();
    const std::string name = fmt::format("{:%Y%m%d-%H%M%S}-{}", now, getpid());
    std::error_code failed;
    fs::create_directories(sessions / name, failed);
    if (failed || !lock_.Take(sessions / name)) {
        error = fmt::format("{}: strokes can't be kept there: {}", (sessions / name).string(),
                            failed ? failed.message() : "the folder can't be locked");
        return false;
    }
    folder_ = sessions / name;
    return true;
}

std::vector<std::string> SessionKeeper::Nodes() const {
    std::vector<std::string> names;
    for (const minihost::NodePtr& node : host_.scene.NodesOfType("KelmoND"))
        names.push_back(node->UniqueName());
    return names;
}

std::string SessionKeeper::Ask(const std::string& what, const std::string& node) const {
    return host_.interpreter.Execute("KelmoJournal -query -" + what + " " + ScriptText(node))
        .value.AsString();
}

bool SessionKeeper::Checkpoint(const std::string& file, bool unsaved, std::string& error) {
    if (!IsOn()) return true;
    SessionRecord next = record_;
    next.file = PlaceOf(file);
    next.unsaved = unsaved;
    next.scene = fmt::format("scene-{}.mhb", ++checkpoints_);
    next.journals.clear();
    const minihost::FileResult saved = minihost::SaveCopy(host_, folder_ / next.scene);
    if (!saved.done) {
        error = saved.error;
        return false;
    }
    for (const std::string& node : Nodes()) {
        next.journals.push_back(
            {node, fmt::format("strokes-{}-{}.jsonl", checkpoints_, next.journals.size())});
        const auto started = host_.interpreter.Execute(
            "KelmoJournal -start " + ScriptText(folder_ / next.journals.back().log) + " " +
            ScriptText(node));
        if (!started.error) continue;
        error = started.error->message;
        return false;
    }
    if (!next.Write(folder_, error)) return false;
    std::error_code ignored;
    if (!record_.scene.empty()) fs::remove(folder_ / record_.scene, ignored);
    for (const auto& journal : record_.journals) fs::remove(folder_ / journal.log, ignored);
    record_ = std::move(next);
    return true;
}

bool SessionKeeper::IsDue() const {
    if (!IsOn()) return false;
    const std::vector<std::string> nodes = Nodes();
    if (nodes.size() != record_.journals.size()) return true;
    for (const std::string& node : nodes)
        if (Ask("path", node).empty() || Ask("broken", node) == "1") return true;
    return false;
}

std::string SessionKeeper::Problem() const {
    if (!IsOn()) return {};
    for (const std::string& node : Nodes())
        if (std::string problem = Ask("problem", node); !problem.empty()) return problem;
    return {};
}

int SessionKeeper::NumStrokes() const {
    int strokes = 0;
    for (const std::string& node : Nodes()) strokes += std::atoi(Ask("strokes", node).c_str());
    return strokes;
}

bool SessionKeeper::WriteLogs(const std::string& path, std::string& error) const {
    for (size_t i = 0; i < record_.journals.size(); ++i) {
        const auto& journal = record_.journals[i];
        host_.interpreter.Execute("KelmoJournal -wait " + ScriptText(journal.node));
        fs::path to = path;
        if (i > 0)
            to.replace_filename(
                fmt::format("{}.{}{}", to.stem().string(), i + 1, to.extension().string()));
        std::string log;
        if (!minihost::ReadWholeFile(folder_ / journal.log, log, error) ||
            !minihost::WriteWholeFile(to, log, error))
            return false;
    }
    return true;
}

void SessionKeeper::End() {
    if (!IsOn()) return;
    for (const std::string& node : Nodes())
        host_.interpreter.Execute("KelmoJournal -stop " + ScriptText(node));
    ForgetSession({folder_, record_, 0});
    lock_.Release();
    folder_.clear();
}

bool RecoverSession(minihost::Host& host, const LeftSession& session, std::string& error) {
    const auto run = [&](const std::string& script) {
        KeptOutput kept;
        minihost::ScriptOutput* const former = host.SetOutput(&kept);
        const auto done = host.interpreter.Execute(script);
        host.SetOutput(former);
        if (done.error) error = kept.text().empty() ? done.error->message : kept.text();
        return !done.error;
    };
    if (!run("file -force -open " + ScriptText(session.folder / session.record.scene)))
        return false;
    host.interpreter.RunDeferred();
    const std::string& file = session.record.file;
    const bool isScene = file.ends_with(".mhs") || file.ends_with(".mhb");
    host.file = {};
    if (isScene) minihost::RenameScene(host, file);
    for (const auto& journal : session.record.journals)
        if (!run("KelmoJournal -play " + ScriptText(session.folder / journal.log) + " " +
                 ScriptText(journal.node)))
            return false;
    return true;
}

}  // namespace kelmo
