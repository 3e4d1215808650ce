#include "minihost/scene/SceneFile.h"

#include <filesystem>
#include <new>
#include <optional>

#include "minihost/Host.h"
#include "minihost/base/WholeFile.h"
#include "minihost/scene/SceneReader.h"
#include "minihost/scene/SceneWriter.h"

namespace minihost {
namespace {

void Tell(Host& host, SceneMessage message) {
    host.listeners.Tell({"Scene", std::to_string(static_cast<int>(message))});
}

/// Reads a file and, where it is whole, does `apply` with it.
FileResult WithFile(Host& host, const std::string& path,
                    const std::function<std::vector<std::string>(ScenePlan&, SceneForm)>& apply) {
    FileResult result;
    std::string content;
    result.done = ReadWholeFile(path, content, result.error);
    if (!result.done) return result;
    try {
        ScenePlan plan(host, content);
        result.warnings = apply(plan, FormOf(content));
    } catch (const DocumentError& error) {
        const std::string place = PlaceIn(content, error.at);
        return {false, path + ":" + place + ": " + error.message, {}};
    } catch (const std::bad_alloc&) {
        return {false, path + ": there is not enough memory to read it", {}};
    }
    for (std::string& warning : result.warnings) warning.insert(0, path + ":");
    return result;
}

/// What the file holds now is found under the name with a "~" from then on; at any moment the file
/// itself is there, whole.
bool KeepBackup(const std::string& path) {
    std::error_code failed;
    const std::string target = std::filesystem::weakly_canonical(path, failed).string();
    if (failed || !std::filesystem::is_regular_file(target, failed)) return true;
    const std::string backup = target + "~", beside = backup + ".tmp";
    std::filesystem::remove(beside, failed);
    std::filesystem::create_hard_link(target, beside, failed);
    // Not every file system has links.
    if (failed) std::filesystem::copy_file(target, beside, failed);
    if (!failed) std::filesystem::rename(beside, backup, failed);
    return !failed;
}

FileResult Write(Host& host, const std::string& path, SceneForm form, bool backup) {
    Tell(host, SceneMessage::BeforeSave);
    FileResult result;
    const std::string content = WriteScene(host, form);
    if (backup && !KeepBackup(path))
        result.warnings.push_back(path + ": what it held could not be kept as a backup");
    result.done = WriteWholeFile(path, content, result.error);
    if (result.done) Tell(host, SceneMessage::AfterSave);
    return result;
}

}  // namespace

void NewScene(Host& host) {
    Tell(host, SceneMessage::BeforeNew);
    host.NewScene();
    host.file = {};
    Tell(host, SceneMessage::AfterNew);
}

FileResult OpenScene(Host& host, const std::string& path) {
    return WithFile(host, path, [&](ScenePlan& plan, SceneForm form) {
        Tell(host, SceneMessage::BeforeOpen);
        host.NewScene();
        host.file = {path, form};
        auto warnings = plan.Apply();
        Tell(host, SceneMessage::AfterOpen);
        return warnings;
    });
}

FileResult ImportScene(Host& host, const std::string& path, const std::string& prefix) {
    return WithFile(host, path, [&](ScenePlan& plan, SceneForm) {
        Tell(host, SceneMessage::BeforeImport);
        auto warnings = plan.Apply(true, prefix);
        host.undo.Clear();
        Tell(host, SceneMessage::AfterImport);
        return warnings;
    });
}

FileResult SaveScene(Host& host) {
    if (host.file.path.empty()) return {false, "the scene has no name: rename it first", {}};
    return Write(host, host.file.path, host.file.form, true);
}

FileResult SaveCopy(Host& host, const std::string& path) {
    return Write(host, path, SceneForm::Binary, false);
}

void RenameScene(Host& host, const std::string& path) {
    host.file.path = path;
    if (path.ends_with(".mhs")) host.file.form = SceneForm::Text;
    if (path.ends_with(".mhb")) host.file.form = SceneForm::Binary;
}

}  // namespace minihost
