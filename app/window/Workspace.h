#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "app/window/SculptNode.h"

namespace kelmo {

/// What is worked on, and the files that it comes from and goes to. All of them return false, with
/// the reason in the host's output, where something fails; what was there is then there still.
class Workspace {
  public:
    /// Empties the scene and opens a file: a scene, or a mesh (OBJ, PLY), which is then ready to
    /// be sculpted.
    bool Open(const std::string& path);
    /// Takes the scene as it is, which came from elsewhere and is in no file as it is: it belongs
    /// to the scene file `path`, or was made from the mesh file `source`; both may be empty.
    bool Adopt(const std::string& path, const std::string& source);
    /// Adds the meshes of a file.
    bool Import(const std::string& path);
    /// Writes the scene to its file. False without a name: see SaveAs.
    bool Save();
    bool SaveAs(const std::string& path);
    /// Writes the sculpted surface, at its finest level, as OBJ or PLY.
    bool Export(const std::string& path);

    /// The scene's file; empty while it has none. A mesh that was opened is its source, and is not
    /// written by Save.
    const std::string& path() const { return path_; }
    const std::string& source() const { return source_; }
    /// What to call the scene: the file's name, or the source's.
    std::string name() const;
    /// Something was done since the last save.
    bool isDirty() const;
    void MarkDirty() { dirty_ = true; }

    /// Puts the sculpt tool on, geometry under the brush, with a node over the selected mesh.
    bool Sculpt();
    /// The same for one of several meshes.
    bool Sculpt(const std::string& mesh);

    /// Who keeps a journal is told of these. `opened` and `saved` with the path.
    std::function<void(const std::string&)> opened, saved;
    /// Is told of a node that was made for a mesh.
    std::function<void(SculptNode&)> made;

    SculptNode node;

  private:
    bool Read(const std::string& path);
    bool SelectMesh();
    void Clean();

    std::string path_, source_;
    bool dirty_ = false;
};

}  // namespace kelmo
