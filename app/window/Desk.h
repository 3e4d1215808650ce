#pragma once

#include <functional>
#include <string>

#include "app/window/Actions.h"
#include "app/window/FrameStats.h"
#include "app/window/Look.h"
#include "app/window/MessageLog.h"
#include "app/window/Preferences.h"
#include "app/window/SessionGuard.h"
#include "app/window/Workspace.h"
#include "minihost/window/Window.h"

namespace kelmo {

/// What the parts of the window share.
struct Desk {
    MessageLog log;
    Workspace work;
    SessionGuard guard{work};
    Look look;
    Preferences preferences;
    FrameStats stats;
    Actions actions;
    minihost::Window* window = nullptr;

    /// What is asked of the person, over the window; one at a time.
    enum class Dialog {
        None,
        Open,
        Import,
        SaveAs,
        Pattern,
        Export,
        Unsaved,
        About,
        Keys,
        FirstSteps,
        Recover,
        Log
    };
    Dialog dialog = Dialog::None;
    /// What the page about the machine tells.
    std::string about;
    /// What goes on when the question about unsaved work is answered.
    std::function<void()> afterUnsaved;

    /// Does something before the next frame: what a panel asks for may take long, and shows its
    /// progress in frames of its own.
    void Later(std::function<void()> task) { minihost::Host::Get().idle.Add(std::move(task)); }
    /// Asks about unsaved work first, where there is some.
    void AskThen(std::function<void()> task) {
        if (!work.isDirty()) return Later(std::move(task));
        afterUnsaved = std::move(task);
        dialog = Dialog::Unsaved;
    }
};

}  // namespace kelmo
