#include "app/window/KelmoWindow.h"

#include <fmt/core.h>
#include <imgui/backends/imgui_impl_opengl2.h>
#include <imgui/imgui.h>
#include <imgui/imgui_internal.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "app/cli/Commands.h"
#include "app/window/Brushes.h"
#include "minihost/command/builtins/Builtins.h"
#include "minihost/graph/Attribute.h"
#include "minihost/image/ImageFile.h"

namespace kelmo {

namespace {

using minihost::Host;
using minihost::WindowEvent;
using Kind = minihost::WindowEvent::Kind;

constexpr int kSettling = 3;
constexpr unsigned long kSizeKey = 's', kStrengthKey = 'd';

bool TakesText() {
    return ImGui::GetIO().WantTextInput;
}

void Box(ImDrawList& list, ImVec2 corner, ImVec2 size, const std::string& text) {
    const float pad = 6;
    list.AddRectFilled({corner.x - pad, corner.y - pad},
                       {corner.x + size.x + pad, corner.y + size.y + pad},
                       IM_COL32(24, 24, 27, 215), 4);
    list.AddText(corner, IM_COL32(232, 232, 235, 255), text.c_str());
}

/// What the module measured since it was asked last.
FrameStats::EventTimes AskEventTimes() {
    const std::vector<std::string> told = RunScript("KelmoTimes", false).AsStrings();
    FrameStats::EventTimes times;
    if (told.size() != 5) return times;
    const auto number = [&](size_t i) { return std::strtod(told[i].c_str(), nullptr); };
    if (const double hits = number(3); hits > 0) times.hit = number(0) / hits / 1000;
    if (const double steps = number(4); steps > 0) {
        times.step = number(1) / steps / 1000;
        times.recalculation = number(2) / steps / 1000;
    }
    return times;
}

}  // namespace

KelmoWindow::KelmoWindow(const WindowOptions& options) : options_(options) {
    Host::Get().SetOutput(&desk_.log);
    desk_.preferences.Read();
}

KelmoWindow::~KelmoWindow() {
    if (imgui_) {
        ImGui_ImplOpenGL2_Shutdown();
        ImGui::DestroyContext(imgui_);
    }
    RunScript("setToolTo selectSuperContext", false);
    window_.reset();
    Host::Get().SetOutput(nullptr);
}

bool KelmoWindow::Run(std::string& error) {
    window_ = minihost::Window::Open({"Kelmo", desk_.preferences.width, desk_.preferences.height,
                                      "persp", desk_.preferences.samples},
                                     *this, error);
    if (!window_) return false;
    desk_.window = window_.get();
    imgui_ = ImGui::CreateContext();
    ImGui_ImplOpenGL2_Init();
    desk_.look.Apply(desk_.preferences.scale);
    input_.Begin();
    desk_.actions.Fill(desk_);
    ListenToHost();
    AddProcedures();
    Host::Get().idle.Add([this] { Start(); });
    if (!options_.timings.empty()) window_->Measure();
    window_->onFrame = [this](const minihost::Window::FrameTimes& times) {
        const bool asks = desk_.stats.shown || !options_.timings.empty();
        desk_.stats.Add(times, asks ? AskEventTimes() : FrameStats::EventTimes());
    };
    window_->Run();
    WritePreferences();
    if (!desk_.guard.Finish(options_.record, error)) return false;
    if (options_.timings.empty()) return true;
    error = desk_.stats.Write(options_.timings);
    return error.empty();
}

void KelmoWindow::Start() {
    desk_.guard.Begin(!options_.record.empty());
    desk_.work.made = [this](SculptNode& node) { desk_.preferences.GiveTo(node); };
    if (!options_.file.empty()) OpenFile(desk_, options_.file);
    if (!desk_.guard.left().empty())
        desk_.dialog = Desk::Dialog::Recover;
    else if (options_.file.empty())
        desk_.dialog = Desk::Dialog::Open;
    else if (!desk_.preferences.hasBegun)
        desk_.dialog = Desk::Dialog::FirstSteps;
    settling_ = kSettling;
    window_->Redraw();
}

void KelmoWindow::ListenToHost() {
    for (const char* event : {"SelectionChanged", "ToolChanged"})
        Host::Get().listeners.Add({"Event", event}, [this](const void*) {
            desk_.Later([this] {
                desk_.work.node.Find();
                window_->Redraw();
            });
        });
    // A stroke begins when something is connected to a node's brush.
    Host::Get().listeners.Add({"ConnectionMade", ""}, [this](const void* what) {
        const auto& [from, to] =
            *static_cast<const std::pair<minihost::Plug, minihost::Plug>*>(what);
        const minihost::Slot* slot = to.Find();
        if (slot && slot->attribute->Matches("brush")) desk_.work.MarkDirty();
    });
}

void KelmoWindow::AddProcedures() {
    minihost::CommandTable& commands = Host::Get().commands;
    for (const char* name :
         {"KelmoUpdateBrushPreview", "kelmoUpdateAffectModeList", "kelmoUpdateUseStencilBoxes",
          "KelmoToolContextUpdateIconSize", "kelmoSetUpGeomMoveUI", "kelmoSetUpGeomBrushUI",
          "kelmoSetUpTextureUI", "kelmoSetUpVColorUI", "kelmoSetUpStencilUI"})
        commands.SetProcedure(name, [this](minihost::CommandCall&) {
            window_->Redraw();
            return minihost::Answer();
        });
    // A stroke draws what it changes alone, unless somebody wants it otherwise.
    if (RunScript("optionVar -exists KelmoDoPixPref", false).AsInt() == 0)
        RunScript("optionVar -iv KelmoDoPixPref 1", false);
    RunScript("Kelmo -readPrefs", false);
    // What takes long tells so by this command; it is shown as well.
    const auto plain = commands.Find("progressWindow");
    if (!plain || !commands.Remove("progressWindow")) return;
    commands.Add({"progressWindow",
                  [this, plain](minihost::CommandCall& call) {
                      ShowProgress(call);
                      return plain->function(call);
                  },
                  plain->kind, plain->usage, plain->byReference});
}

void KelmoWindow::ShowProgress(const minihost::CommandCall& call) {
    for (size_t i = 0; i < call.arguments.size(); ++i) {
        const std::string flag = call.Text(i);
        if (flag == "-progress" || flag == "-pr")
            progress_.percent = std::atoi(call.Text(i + 1).c_str());
        if (flag == "-status" || flag == "-st") progress_.text = call.Text(i + 1);
        if (flag == "-query" || flag == "-q") return;
        progress_.shown = flag != "-endProgress" && flag != "-ep";
        if (!progress_.shown) break;
    }
    window_->Breathe();
}

minihost::WindowPlace KelmoWindow::ViewPlace(int width, int height) {
    return Layout(desk_, width, height).view;
}

bool KelmoWindow::TakesAll() {
    return popupOpen_ || desk_.dialog != Desk::Dialog::None || held_.key != 0 || progress_.shown;
}

bool KelmoWindow::Handle(const WindowEvent& event) {
    input_.Tell(event);
    settling_ = kSettling;
    const bool taken = HandleHeld(event) || (event.kind == Kind::KeyDown && HandleKey(event));
    FollowLater();
    return taken;
}

/// What was done is kept when it is done, and never inside a stroke or within other work.
void KelmoWindow::FollowLater() {
    if (following_) return;
    following_ = true;
    desk_.Later([this] {
        following_ = false;
        if (!window_->isDragging() && !progress_.shown) desk_.guard.Follow();
    });
}

bool KelmoWindow::HandleKey(const WindowEvent& event) {
    if (event.key == keys::kEscape && popupOpen_ && desk_.dialog == Desk::Dialog::None) {
        closesMenus_ = true;
        return true;
    }
    if (TakesText() || popupOpen_ || desk_.dialog != Desk::Dialog::None || window_->isDragging())
        return false;
    const unsigned long key = keys::Plain(event.key);
    // A sign that takes Shift on this keyboard is a key of its own.
    const bool sign = key > ' ' && key < 127 && !std::isalpha(static_cast<int>(key));
    const Action* action = desk_.actions.Find({key, event.control, event.shift && !sign});
    if (!action) return false;
    action->run();
    return true;
}

bool KelmoWindow::HandleHeld(const WindowEvent& event) {
    const unsigned long key = keys::Plain(event.key);
    const bool isKey = key == kSizeKey || key == kStrengthKey;
    SculptNode& node = desk_.work.node;
    const char* attribute = held_.key == kSizeKey ? "toolSize" : node.strength();
    if (event.kind == Kind::KeyDown && isKey && !event.control && !event.shift && !held_.key &&
        !TakesText() && !TakesAll() && !window_->isDragging()) {
        held_ = {key, false, event.x, event.y, 0};
        return true;
    }
    if (!held_.key) return false;
    if ((event.kind == Kind::KeyUp && key == held_.key) || event.kind == Kind::Unfocus) {
        held_ = {};
        return true;
    }
    const int mode = node.mode();
    if (event.kind == Kind::Press && event.button == 1)
        held_ = {held_.key, true, event.x, event.y, node.Get(attribute, mode)};
    if (event.kind == Kind::Release) held_.dragging = false;
    if (event.kind == Kind::Motion && held_.dragging) {
        const double width = std::max(1, window_->view().width());
        const double by = (event.x - held_.x) / width;
        // A size grows by what is dragged, so that the circle follows the pointer.
        const double value =
            held_.key == kSizeKey ? held_.value + by : held_.value * std::exp(6 * by);
        node.Set(attribute, std::clamp(value, 0.001, held_.key == kSizeKey ? 0.5 : 10.), mode);
    } else if (event.kind == Kind::Motion) {
        held_.x = event.x;
        held_.y = event.y;
    }
    return true;
}

void KelmoWindow::DrawHeld(const Layout& layout) {
    if (!held_.key) return;
    const SculptNode& node = desk_.work.node;
    const int mode = node.mode();
    const auto size = static_cast<float>(node.Get("toolSize", mode));
    const auto x = static_cast<float>(held_.x), y = static_cast<float>(held_.y);
    ImDrawList& list = *ImGui::GetForegroundDrawList();
    list.PushClipRect({static_cast<float>(layout.view.x), static_cast<float>(layout.view.y)},
                      {static_cast<float>(layout.view.x + layout.view.width),
                       static_cast<float>(layout.view.y + layout.view.height)});
    const float radius = size * static_cast<float>(layout.view.width);
    list.AddCircle({x, y}, radius, IM_COL32(0, 0, 0, 160), 64, 3);
    list.AddCircle({x, y}, radius, Look::kAccent, 64, 1.5f);
    const std::string text = held_.key == kSizeKey
                                 ? fmt::format("Size {:.3f}", size)
                                 : fmt::format("Strength {:.3f}", node.Get(node.strength(), mode));
    Box(list, {x + 16, y + 16}, ImGui::CalcTextSize(text.c_str()), text);
    list.PopClipRect();
}

void KelmoWindow::DrawProgress(const Layout& layout) {
    if (!progress_.shown) return;
    ImDrawList& list = *ImGui::GetForegroundDrawList();
    const float width = std::min(360.f * desk_.look.scale, static_cast<float>(layout.view.width)),
                x = static_cast<float>(layout.view.x) +
                    (static_cast<float>(layout.view.width) - width) / 2,
                y = static_cast<float>(layout.view.y + layout.view.height / 2);
    list.AddRectFilled({x - 14, y - 34}, {x + width + 14, y + 26}, IM_COL32(24, 24, 27, 235), 5);
    list.AddText({x, y - 24}, IM_COL32(232, 232, 235, 255), progress_.text.c_str());
    list.AddRectFilled({x, y + 2}, {x + width, y + 10}, IM_COL32(60, 61, 66, 255), 4);
    const float share = std::clamp(static_cast<float>(progress_.percent) / 100, 0.f, 1.f);
    list.AddRectFilled({x, y + 2}, {x + width * share, y + 10}, Look::kAccent, 4);
}

void KelmoWindow::DrawTimings(const Layout& layout) {
    if (!desk_.stats.shown) return;
    std::string text = fmt::format("{:<8}{:>9}{:>9}\n", "ms", "median", "95 %");
    for (const FrameStats::Stage& stage : desk_.stats.Stages())
        text += fmt::format("{:<8}{:>9.2f}{:>9.2f}\n", stage.name, stage.median, stage.p95);
    text += fmt::format("start {:.2f} s", desk_.stats.start);
    ImGui::PushFont(desk_.look.mono);
    Box(*ImGui::GetForegroundDrawList(),
        {static_cast<float>(layout.view.x) + 16, static_cast<float>(layout.view.y) + 16},
        ImGui::CalcTextSize(text.c_str()), text);
    ImGui::PopFont();
}

bool KelmoWindow::Draw(int width, int height) {
    if (!imgui_) return true;
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = {static_cast<float>(width), static_cast<float>(height)};
    static auto before = std::chrono::steady_clock::now();
    const auto now = std::chrono::steady_clock::now();
    io.DeltaTime = std::clamp(std::chrono::duration<float>(now - before).count(), 1e-4f, 1.f);
    before = now;
    desk_.preferences.width = width;
    desk_.preferences.height = height;
    if (input_.Feed()) settling_ = kSettling;
    ImGui_ImplOpenGL2_NewFrame();
    ImGui::NewFrame();
    if (std::exchange(closesMenus_, false)) ImGui::ClosePopupToLevel(0, true);
    const Layout layout(desk_, width, height);
    DrawPanels(desk_, layout);
    dialogs_.Draw(desk_);
    DrawHeld(layout);
    DrawTimings(layout);
    DrawProgress(layout);
    popupOpen_ = ImGui::IsPopupOpen("", ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
    ImGui::Render();
    ImGui_ImplOpenGL2_RenderDrawData(ImGui::GetDrawData());
    UpdateTitle();
    return --settling_ > 0;
}

void KelmoWindow::UpdateTitle() {
    const std::string title =
        desk_.work.name() + (desk_.work.isDirty() ? " (changed)" : "") + " - Kelmo";
    if (title == title_) return;
    title_ = title;
    window_->SetTitle(title);
}

void KelmoWindow::CloseAsked() {
    desk_.actions.Get("quit").run();
}

void KelmoWindow::DisplayLost(const std::string& message) {
    Fail(message +
         "\nWhat was done is kept: kelmo offers it when it starts, and so does kelmo recover.");
}

void KelmoWindow::WritePreferences() {
    desk_.preferences.TakeFrom(desk_.work.node);
    if (const std::string why = desk_.preferences.Write(); !why.empty())
        Fail("the preferences could not be kept: " + why);
}

bool HasDisplay() {
    const char* display = std::getenv("DISPLAY");
    return display && *display;
}

int RunWindow(const WindowOptions& options) {
    Host& host = Host::Get();
    host.interactive = true;
    minihost::AddBuiltins(host.commands, {"", true, ""});
    std::string error;
    if (!LoadModule(host, error)) return Fail(error);
    KelmoWindow window(options);
    return window.Run(error) ? 0 : Fail(error);
}

}  // namespace kelmo
