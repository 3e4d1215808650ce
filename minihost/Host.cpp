#include "minihost/Host.h"

#include <algorithm>

#include "minihost/anim/AnimTypes.h"
#include "minihost/command/scene/SceneCommands.h"
#include "minihost/dag/DagTypes.h"
#include "minihost/deform/GeometryFilter.h"
#include "minihost/graph/Modifier.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Sets.h"
#include "minihost/scene/UnknownNode.h"
#include "minihost/shade/ShadeTypes.h"

namespace minihost {

Host& Host::Get() {
    static Host* host = new Host;
    return *host;
}

Host::Host() {
    RegisterDagTypes(types);
    RegisterAnimTypes(types);
    RegisterMeshTypes(types);
    RegisterSetTypes(types);
    RegisterDeformTypes(types);
    RegisterShadeTypes(types);
    RegisterUnknownTypes(types);
    interpreter.SetStatementScope(&scope_);
    AddSceneCommands(*this);
    MakeDefaultNodes();
}

void Host::Forward::Print(std::string_view text) {
    target ? target->Print(text) : ScriptOutput::Print(text);
}
void Host::Forward::Info(std::string_view text) {
    target ? target->Info(text) : ScriptOutput::Info(text);
}
void Host::Forward::Warning(std::string_view text) {
    target ? target->Warning(text) : ScriptOutput::Warning(text);
}
void Host::Forward::Error(std::string_view text) {
    target ? target->Error(text) : ScriptOutput::Error(text);
}

void Host::MakeDefaultNodes() {
    Modifier edits(scene);
    edits.Create("time", "time1");
    MakeDefaultShading(edits);
    defaults_ = scene.Nodes();
    playback.Reset();
    startsOtherwise_.clear();
    for (const NodePtr& node : defaults_)
        for (Slot& root : node->roots())
            root.ForEachLeaf([this](const Slot& leaf) {
                if (!SameValue(leaf.value, leaf.attribute->defaultValue))
                    startsOtherwise_.insert(&leaf);
            });
}

DagNodePtr Host::MakeDefaultCamera(const std::string& name) {
    Modifier edits(scene);
    const DagNodePtr camera = edits.CreateShape(types.Find("camera"), name);
    defaults_.push_back(camera->parent()->ShareDag());
    defaults_.push_back(camera);
    return camera;
}

bool Host::IsDefault(const Node& node) const {
    return std::ranges::any_of(defaults_, [&node](const auto& d) { return d.get() == &node; });
}

void Host::Turn() {
    timers.Turn();
    playback.Turn(timers.clock());
    idle.Flush();
}

void Host::NewScene() {
    tools.SetTo(Tools::kSelect);
    undo.Clear();
    scene.selection.clear();
    Modifier modifier(scene);
    for (const NodePtr& node : scene.Nodes()) modifier.Delete(node);
    MakeDefaultNodes();
    views.Renew();
}

}  // namespace minihost
