#pragma once

#include <string>
#include <vector>

#include "minihost/scene/Document.h"

namespace minihost {

class Host;

/// What listeners hear of scene files: the topic {"Scene", number}.
enum class SceneMessage {
    BeforeNew = 1,
    AfterNew,
    BeforeImport,
    AfterImport,
    BeforeOpen,
    AfterOpen,
    BeforeSave = 9,
    AfterSave
};

/// The file that the scene belongs to.
struct SceneFile {
    /// Empty for a scene that has no name yet.
    std::string path;
    SceneForm form = SceneForm::Text;
};

/// What a file operation came to. One that failed has changed nothing.
struct FileResult {
    bool done = true;
    /// Names the file, and the place in it.
    std::string error;
    /// What is not as the file says, each with its place.
    std::vector<std::string> warnings;
};

// Before a message of the first kind is told an operation has failed or it will be done: a file is
// read and found whole first. None can be taken back; the undo queue is emptied.

/// An empty scene without a name.
void NewScene(Host& host);
FileResult OpenScene(Host& host, const std::string& path);
/// Adds what a file holds. `prefix`: what comes before the names of its nodes ("ns:").
FileResult ImportScene(Host& host, const std::string& path, const std::string& prefix = {});
/// Writes the scene to its file. What was in the file stays as its backup, with a "~" behind the
/// name, in the place of an older one.
FileResult SaveScene(Host& host);
/// Writes the scene, in the binary form, to another file than its own, which stays its file.
FileResult SaveCopy(Host& host, const std::string& path);
/// The name that the scene is saved under from now on. ".mhs" at its end stands for the text form,
/// ".mhb" for the binary one; else the form stays.
void RenameScene(Host& host, const std::string& path);

}  // namespace minihost
