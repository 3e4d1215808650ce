#pragma once

#include <memory>
#include <unordered_set>
#include <utility>

#include "minihost/anim/Playback.h"
#include "minihost/anim/Timers.h"
#include "minihost/command/Interpreter.h"
#include "minihost/command/ScriptScope.h"
#include "minihost/graph/Messages.h"
#include "minihost/graph/NodeType.h"
#include "minihost/graph/Scene.h"
#include "minihost/graph/UndoQueue.h"
#include "minihost/plugin/Module.h"
#include "minihost/plugin/PluginData.h"
#include "minihost/plugin/Tools.h"
#include "minihost/scene/IdleQueue.h"
#include "minihost/scene/SceneFile.h"
#include "minihost/view/Views.h"

namespace minihost {

/// What the host says of its version: the year of the interface that it serves, and its kind.
inline constexpr const char* kHostVersion = "2012 x64";

/// The one host of a process: what is known (types, commands, modules), what is there (the scene),
/// what was done (the undo queue), who listens. Everything of it belongs to the main thread.
class Host {
  public:
    /// Made at the first call, with all built-in types and an empty scene; never destroyed, so that
    /// modules may call at any time.
    static Host& Get();

    /// Empties the scene but for the nodes that every scene has, and forgets what was done.
    void NewScene();
    /// Whether every scene has a node; such nodes are not to be deleted or renamed.
    bool IsDefault(const Node& node) const;
    /// A camera of a name below a transform, as every scene has one from here on.
    DagNodePtr MakeDefaultCamera(const std::string& name);
    /// Whether a value of such a node is made other than its attribute says, as the scene's time
    /// is.
    bool StartsOtherwise(const Slot& leaf) const { return startsOtherwise_.contains(&leaf); }

    /// A turn of the event loop: timers that are due, the next frame while playing, then what waits
    /// for idle time. Whoever has nothing else to do calls it, and calls it again at once while
    /// it is playing or tasks wait, and after timers.Wait() seconds otherwise.
    void Turn();

    /// Where messages go; standard output and error until it is set. Must outlive the host's use.
    /// SetOutput returns where they went before.
    ScriptOutput& output() { return forward_; }
    ScriptOutput* SetOutput(ScriptOutput* output) { return std::exchange(forward_.target, output); }

    NodeTypes types;
    Listeners listeners;
    Scene scene{types, listeners};
    UndoQueue undo;
    Playback playback{scene};
    Timers timers{listeners};
    IdleQueue idle;
    SceneFile file;
    PluginDataTypes dataTypes;
    CommandTable commands;
    Tools tools;
    Modules modules;
    Views views;
    /// Whether a person sits before a window.
    bool interactive = false;

  private:
    /// Hands messages on to where they go at the time.
    struct Forward : ScriptOutput {
        void Print(std::string_view text) override;
        void Info(std::string_view text) override;
        void Warning(std::string_view text) override;
        void Error(std::string_view text) override;
        ScriptOutput* target = nullptr;
    };

    Host();
    void MakeDefaultNodes();

    std::vector<NodePtr> defaults_;
    std::unordered_set<const Slot*> startsOtherwise_;
    Forward forward_;
    ScriptScope scope_{undo};

  public:
    Interpreter interpreter{commands, forward_};
};

}  // namespace minihost
