#pragma once

#include <memory>
#include <string>

#include "app/window/Desk.h"
#include "app/window/Dialogs.h"
#include "app/window/ImGuiInput.h"
#include "app/window/Panels.h"

struct ImGuiContext;

namespace kelmo {

struct WindowOptions {
    /// What is opened; empty for nothing.
    std::string file;
    /// Where the timings of the session go at its end; empty for nowhere.
    std::string timings;
    /// Where the strokes of the session go at its end, as a log; empty for nowhere.
    std::string record;
};

/// The window in which a person sculpts. The module must be loaded.
class KelmoWindow : public minihost::Surroundings {
  public:
    explicit KelmoWindow(const WindowOptions& options);
    ~KelmoWindow() override;

    /// Opens it, and runs until it is closed. False, with the reason in `error`.
    bool Run(std::string& error);

    minihost::WindowPlace ViewPlace(int width, int height) override;
    bool Handle(const minihost::WindowEvent& event) override;
    bool TakesAll() override;
    bool Draw(int width, int height) override;
    void CloseAsked() override;
    void DisplayLost(const std::string& message) override;

  private:
    /// What a drag in the view with a key held changes.
    struct Held {
        unsigned long key = 0;
        bool dragging = false;
        int x = 0, y = 0;
        double value = 0;
    };
    struct Progress {
        bool shown = false;
        int percent = 0;
        std::string text;
    };

    void Start();
    void FollowLater();
    void ListenToHost();
    void AddProcedures();
    bool HandleKey(const minihost::WindowEvent& event);
    bool HandleHeld(const minihost::WindowEvent& event);
    void DrawOverlay(const Layout& layout);
    void DrawHeld(const Layout& layout);
    void DrawProgress(const Layout& layout);
    void DrawTimings(const Layout& layout);
    void ShowProgress(const minihost::CommandCall& call);
    void UpdateTitle();
    void WritePreferences();

    WindowOptions options_;
    Desk desk_;
    Dialogs dialogs_;
    ImGuiInput input_;
    ImGuiContext* imgui_ = nullptr;
    std::unique_ptr<minihost::Window> window_;
    Held held_;
    Progress progress_;
    std::string title_;
    /// Frames that are drawn after something happened, until what follows from it is shown.
    int settling_ = 0;
    bool popupOpen_ = false, closesMenus_ = false, following_ = false;
};

/// The program's window; the exit code.
int RunWindow(const WindowOptions& options);
/// Whether there is a display to open one on.
bool HasDisplay();

}  // namespace kelmo
