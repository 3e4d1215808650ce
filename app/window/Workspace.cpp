#include "app/window/Workspace.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>

#include "app/cli/ModuleHost.h"
#include "app/window/MeshExchange.h"
#include "core/io/MeshFile.h"
#include "minihost/dag/DagNode.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshTypes.h"

namespace kelmo {

namespace {

namespace fs = std::filesystem;
using minihost::DagNode;
using minihost::Host;

bool EndsWith(const std::string& path, const char* ending) {
    std::string lower = fs::path(path).extension();
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower == ending;
}

bool IsScene(const std::string& path) {
    return EndsWith(path, ".mhs") || EndsWith(path, ".mhb");
}

bool Fails(const std::string& message) {
    Host::Get().output().Error(message);
    return false;
}

bool ImportPly(const std::string& path) {
    VantrelSDK::PolyMesh read;
    VantrelSDK::FileError failed;
    if (!VantrelSDK::ReadMesh(path, read, failed)) return Fails(failed.Text());
    std::string error;
    const minihost::MeshPtr mesh = ToHost(read, error);
    if (!mesh) return Fails(path + ": " + error);
    minihost::Modifier edits(Host::Get().scene);
    minihost::CreateMesh(edits, mesh, fs::path(path).stem());
    return true;
}

/// A mesh that is to be seen, at or below a node; null without one.
DagNode* MeshBelow(DagNode& node) {
    const minihost::Slot* hidden = node.FindSlot("intermediateObject");
    if (node.Is(MFn::kMesh) && hidden && NumberOf(hidden->value) == 0) return &node;
    for (const auto& child : node.children())
        if (DagNode* mesh = MeshBelow(*child)) return mesh;
    return nullptr;
}

/// Deletes a node at the end of a scope.
class Passing {
  public:
    explicit Passing(std::string name) : name_(std::move(name)) {}
    ~Passing() { RunScript("delete " + name_, false); }
    Passing(const Passing&) = delete;
    Passing& operator=(const Passing&) = delete;

  private:
    std::string name_;
};

}  // namespace

std::string Workspace::name() const {
    const std::string& file = path_.empty() ? source_ : path_;
    return file.empty() ? "untitled" : fs::path(file).filename().string();
}

bool Workspace::isDirty() const {
    return dirty_ && node.exists();
}

void Workspace::Clean() {
    dirty_ = false;
    Host::Get().undo.Clear();
}

bool Workspace::Read(const std::string& path) {
    std::error_code missing;
    if (!fs::exists(path, missing))
        return Fails(path + ": there is no such file; look at its name and folder");
    if (EndsWith(path, ".ply")) return ImportPly(path);
    bool good = false;
    const char* how = IsScene(path) ? "-open" : "-import";
    RunScript(fmt::format("file {} {}", how, ScriptText(path)), false, &good);
    // What nodes do at a new time, which takes the tool away.
    Host::Get().idle.Flush();
    return good;
}

bool Workspace::Open(const std::string& path) {
    RunScript("setToolTo selectSuperContext", false);
    if (!IsScene(path) && node.exists()) {
        // A file that can't be read leaves the scene as it is.
        VantrelSDK::PolyMesh read;
        VantrelSDK::FileError failed;
        if (!VantrelSDK::ReadMesh(path, read, failed)) {
            Sculpt();
            return Fails(failed.Text());
        }
    }
    if (!IsScene(path)) RunScript("file -new -force", false);
    if (!Read(path)) {
        Sculpt();
        return false;
    }
    path_ = IsScene(path) ? path : "";
    source_ = IsScene(path) ? "" : path;
    const bool ready = Sculpt();
    Clean();
    if (opened) opened(path);
    return ready;
}

bool Workspace::Adopt(const std::string& path, const std::string& source) {
    path_ = path;
    source_ = source;
    const bool ready = Sculpt();
    MarkDirty();
    return ready;
}

bool Workspace::Import(const std::string& path) {
    const bool read = Read(path);
    if (read) MarkDirty();
    Sculpt();
    return read;
}

bool Workspace::Save() {
    if (path_.empty()) return Fails("the scene has no name yet: save it under one");
    bool good = false;
    RunScript("file -rename " + ScriptText(path_) + "; file -save", false, &good);
    if (!good) return false;
    dirty_ = false;
    Host::Get().output().Info("saved " + path_);
    if (saved) saved(path_);
    return true;
}

bool Workspace::SaveAs(const std::string& path) {
    const std::string former = std::exchange(path_, IsScene(path) ? path : path + ".mhb");
    if (Save()) return true;
    path_ = former;
    return false;
}

bool Workspace::Export(const std::string& path) {
    if (!EndsWith(path, ".obj") && !EndsWith(path, ".ply"))
        return Fails(path + ": a surface is exported as .obj or .ply; give it such an ending");
    if (!node.exists()) return Fails("there is no sculpted mesh to export");
    const std::string made = node.name() + "Mesh";
    const auto selection = Host::Get().scene.selection;
    RunScript("select " + node.mesh() + "; Kelmo -exportDelta", false);
    Host::Get().scene.selection = selection;
    const auto top = std::dynamic_pointer_cast<DagNode>(Host::Get().scene.Find(made));
    DagNode* shape = top ? MeshBelow(*top) : nullptr;
    const minihost::MeshPtr mesh = shape ? minihost::MeshOf(*shape) : nullptr;
    if (!mesh) return Fails("the surface could not be taken from " + node.name());
    const Passing passing(made);
    std::string error;
    if (!VantrelSDK::WriteMesh(path, FromHost(*mesh), error)) return Fails(error);
    Host::Get().output().Info(
        fmt::format("exported {} polygons to {}", mesh->polygons().count(), path));
    return true;
}

bool Workspace::SelectMesh() {
    Host& host = Host::Get();
    for (const auto& item : host.scene.selection)
        if (auto* dag = dynamic_cast<DagNode*>(item.node.get()); dag && MeshBelow(*dag))
            return true;
    for (const auto& top : host.scene.world().children())
        if (DagNode* mesh = MeshBelow(*top)) {
            RunScript("select " + mesh->parent()->UniqueName(), false);
            return true;
        }
    return false;
}

bool Workspace::Sculpt() {
    const bool was = dirty_;
    Host& host = Host::Get();
    if (host.tools.ClassOf(host.tools.current()) != "KelmoToolContext") {
        if (!SelectMesh()) return Fails("there is no mesh to sculpt: open or import one");
        const size_t before = host.scene.NodesOfType("KelmoND").size();
        RunScript("KelmoSculpt -mode 1", false);
        node.Find();
        if (made && host.scene.NodesOfType("KelmoND").size() > before) made(node);
    }
    node.Find();
    node.ReadLevels();
    dirty_ = was;
    return node.exists();
}

bool Workspace::Sculpt(const std::string& mesh) {
    // The tool follows what is selected to a mesh that has a node; another one gets its node when
    // the tool is taken up.
    if (!SculptNode::Has(mesh)) RunScript("setToolTo selectSuperContext", false);
    RunScript("select " + mesh, false);
    return Sculpt();
}

}  // namespace kelmo
