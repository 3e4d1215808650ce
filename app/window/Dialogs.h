#pragma once

#include <string>

#include "app/window/Desk.h"
#include "app/window/FileDialog.h"

namespace kelmo {

/// What is asked and told over the window, one thing at a time; see Desk::Dialog.
class Dialogs {
  public:
    /// Within a frame of Dear ImGui.
    void Draw(Desk& desk);

  private:
    void Begin(Desk& desk);
    bool DrawContent(Desk& desk);
    bool DrawUnsaved(Desk& desk);
    bool DrawRecover(Desk& desk);
    bool DrawAbout(Desk& desk);
    bool DrawLog(Desk& desk);

    Desk::Dialog shown_ = Desk::Dialog::None;
    FileDialog files_;
};

}  // namespace kelmo
