#include "app/window/Dialogs.h"

#include <fmt/core.h>
#include <imgui/imgui.h>

#include <filesystem>

#include "app/window/Brushes.h"

namespace kelmo {

namespace {

using Kind = Desk::Dialog;

const char* TitleOf(Kind dialog) {
    switch (dialog) {
        case Kind::Open:
            return "Open";
        case Kind::Import:
            return "Import";
        case Kind::SaveAs:
            return "Save as";
        case Kind::Pattern:
            return "Add a pattern";
        case Kind::Export:
            return "Export the surface";
        case Kind::Unsaved:
            return "Unsaved work";
        case Kind::About:
            return "About this machine";
        case Kind::Keys:
            return "Keys";
        case Kind::FirstSteps:
            return "First steps";
        case Kind::Recover:
            return "Bring back what was not saved";
        case Kind::Log:
            return "Messages";
        default:
            return "";
    }
}

/// True until it is pressed.
bool Stays(Desk& desk, const char* button) {
    ImGui::Dummy({0, 4});
    return !ImGui::Button(button, {120 * desk.look.scale, 0});
}

void Step(Desk& desk, const char* what, const char* how) {
    ImGui::PushFont(desk.look.bold);
    ImGui::TextUnformatted(what);
    ImGui::PopFont();
    ImGui::SameLine(120 * desk.look.scale);
    ImGui::PushTextWrapPos(560 * desk.look.scale);
    ImGui::TextUnformatted(how);
    ImGui::PopTextWrapPos();
    ImGui::Dummy({0, 2});
}

bool DrawFirstSteps(Desk& desk) {
    Step(desk, "Sculpt",
         "Press and drag on the head with the left button. Brush Pull (key 1) builds up.");
    Step(desk, "Shift, Ctrl",
         "Hold Shift while you sculpt to smooth. Hold Ctrl to do the contrary: dig in.");
    Step(desk, "Look around",
         "Alt and the left button turn, Alt and the middle one shift, Alt and the right one, or "
         "the wheel, come closer. A frames all, F what is selected.");
    Step(desk, "Size", "Keys [ and ], or hold S and drag. Strength: - and =, or hold D and drag.");
    Step(desk, "Detail", "Ctrl+L adds a finer level, PageUp and PageDown go from one to another.");
    Step(desk, "Undo",
         "Ctrl+Z takes back strokes, Ctrl+S saves. Rest the pointer on anything to read what it "
         "does.");
    return Stays(desk, "Start sculpting");
}

void KeyRow(const std::string& name, const std::string& key) {
    ImGui::TableNextColumn();
    ImGui::TextUnformatted(name.c_str());
    ImGui::TableNextColumn();
    ImGui::TextDisabled("%s", key.c_str());
}

bool DrawKeys(Desk& desk) {
    if (ImGui::BeginTable("keys", 6, ImGuiTableFlags_RowBg)) {
        for (const Action& action : desk.actions.all())
            if (!action.key.empty()) KeyRow(action.name, action.key);
        KeyRow("Size by dragging", "hold S");
        KeyRow("Strength by dragging", "hold D");
        KeyRow("Smooth", "hold Shift");
        KeyRow("The contrary", "hold Ctrl");
        KeyRow("Turn", "Alt, left");
        KeyRow("Shift the view", "Alt, middle");
        KeyRow("Closer", "Alt, right; wheel");
        ImGui::EndTable();
    }
    return Stays(desk, "Close");
}

}  // namespace

bool Dialogs::DrawLog(Desk& desk) {
    ImGui::BeginChild("messages", {680 * desk.look.scale, 380 * desk.look.scale}, true);
    for (const auto& message : desk.log.messages()) {
        const bool plain = message.kind == MessageLog::Kind::Text;
        if (!plain)
            ImGui::PushStyleColor(ImGuiCol_Text, message.kind == MessageLog::Kind::Error
                                                     ? Look::kError
                                                     : Look::kWarning);
        ImGui::TextWrapped("%s", message.text.c_str());
        if (!plain) ImGui::PopStyleColor();
    }
    if (ImGui::IsWindowAppearing()) ImGui::SetScrollHereY(1);
    ImGui::EndChild();
    return Stays(desk, "Close");
}

bool Dialogs::DrawAbout(Desk& desk) {
    ImGui::BeginChild("about", {680 * desk.look.scale, 420 * desk.look.scale}, true);
    ImGui::PushFont(desk.look.mono);
    ImGui::TextUnformatted(desk.about.c_str());
    ImGui::PopFont();
    ImGui::EndChild();
    return Stays(desk, "Close");
}

bool Dialogs::DrawUnsaved(Desk& desk) {
    ImGui::Text("%s has changes that are not saved.", desk.work.name().c_str());
    ImGui::Dummy({0, 4});
    const ImVec2 size{120 * desk.look.scale, 0};
    const auto goOn = [&desk] { desk.Later(std::exchange(desk.afterUnsaved, nullptr)); };
    const bool confirmed = !ImGui::IsWindowAppearing() &&
                           ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Enter), false);
    if (ImGui::Button("Save", size) || confirmed) {
        if (desk.work.path().empty()) {
            desk.dialog = Kind::SaveAs;  // what was to be done is done after it
            return true;
        }
        desk.Later([&desk, goOn] {
            if (desk.work.Save()) goOn();
        });
        return false;
    }
    ImGui::SameLine();
    if (ImGui::Button("Don't save", size)) {
        goOn();
        return false;
    }
    ImGui::SameLine();
    if (!ImGui::Button("Cancel", size)) return true;
    desk.afterUnsaved = nullptr;
    return false;
}

bool Dialogs::DrawRecover(Desk& desk) {
    ImGui::TextUnformatted("Kelmo ended without being closed. Every stroke was kept.");
    ImGui::Dummy({0, 4});
    bool stays = true;
    if (ImGui::BeginTable("left", 4, ImGuiTableFlags_RowBg | ImGuiTableFlags_SizingFixedFit)) {
        for (size_t i = 0; i < desk.guard.left().size(); ++i) {
            const LeftSession& session = desk.guard.left()[i];
            const std::string& file = session.record.file;
            ImGui::PushID(static_cast<int>(i));
            ImGui::TableNextColumn();
            ImGui::AlignTextToFramePadding();
            ImGui::TextUnformatted(file.empty() ? "untitled"
                                                : std::filesystem::path(file).filename().c_str());
            if (ImGui::IsItemHovered() && !file.empty()) ImGui::SetTooltip("%s", file.c_str());
            ImGui::TableNextColumn();
            ImGui::AlignTextToFramePadding();
            ImGui::TextDisabled("%s, %d strokes", session.record.began.c_str(), session.strokes);
            ImGui::TableNextColumn();
            const bool confirmed = i == 0 && !ImGui::IsWindowAppearing() &&
                                   ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Enter), false);
            if (ImGui::Button("Bring back") || confirmed) {
                desk.Later([&desk, i] {
                    desk.guard.BringBack(i);
                    desk.actions.Get("frameAll").run();
                });
                stays = false;
            }
            ImGui::TableNextColumn();
            if (ImGui::Button("Throw away")) desk.Later([&desk, i] { desk.guard.Forget(i); });
            ImGui::PopID();
        }
        ImGui::EndTable();
    }
    return Stays(desk, "Later") && stays && !desk.guard.left().empty();
}

void Dialogs::Begin(Desk& desk) {
    const std::string& folder = desk.preferences.folder;
    const std::string stem = std::filesystem::path(desk.work.name()).stem();
    const std::vector<std::string> meshes{".obj", ".ply"}, scenes{".mhb", ".mhs"};
    std::vector<std::string> all = scenes;
    all.insert(all.end(), meshes.begin(), meshes.end());
    const auto remember = [&desk](const std::string& path) { desk.preferences.Remember(path); };
    switch (shown_) {
        case Kind::Open:
            return files_.Ask({"Open", "Open", all, false, "",
                               [&desk](const std::string& path) { OpenFile(desk, path); }},
                              folder);
        case Kind::Import:
            return files_.Ask({"Import", "Import", all, false, "",
                               [&desk](const std::string& path) { desk.work.Import(path); }},
                              folder);
        case Kind::SaveAs:
            return files_.Ask({"Save as", "Save", scenes, true, stem + ".mhb",
                               [&desk, remember](const std::string& path) {
                                   if (!desk.work.SaveAs(path)) return;
                                   remember(desk.work.path());
                                   if (const auto then = std::exchange(desk.afterUnsaved, nullptr))
                                       then();
                               }},
                              folder);
        case Kind::Pattern:
            return files_.Ask(
                {"Add a pattern",
                 "Add",
                 {".png", ".jpg", ".jpeg", ".tif", ".tiff", ".tga", ".bmp", ".exr", ".iff"},
                 false,
                 "",
                 [&desk](const std::string& path) { desk.work.node.AddPattern(path); }},
                folder);
        case Kind::Export:
            return files_.Ask({"Export", "Export", meshes, true, stem + "_sculpted.obj",
                               [&desk](const std::string& path) { desk.work.Export(path); }},
                              folder);
        default:
            return;
    }
}

bool Dialogs::DrawContent(Desk& desk) {
    switch (shown_) {
        case Kind::Unsaved:
            return DrawUnsaved(desk);
        case Kind::About:
            return DrawAbout(desk);
        case Kind::Keys:
            return DrawKeys(desk);
        case Kind::FirstSteps:
            return DrawFirstSteps(desk);
        case Kind::Recover:
            return DrawRecover(desk);
        case Kind::Log:
            return DrawLog(desk);
        default:
            return files_.Draw(desk);
    }
}

void Dialogs::Draw(Desk& desk) {
    if (desk.dialog == Kind::None) return;
    if (desk.dialog != shown_) {
        shown_ = desk.dialog;
        Begin(desk);
        ImGui::OpenPopup(TitleOf(shown_));
    }
    const ImVec2 size = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos({size.x / 2, size.y / 2}, ImGuiCond_Always, {0.5f, 0.5f});
    bool open = true;
    const char* title = TitleOf(shown_);
    if (ImGui::BeginPopupModal(title, &open,
                               ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoMove |
                                   ImGuiWindowFlags_NoSavedSettings)) {
        const bool stays =
            DrawContent(desk) && open && !ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Escape));
        if (!stays || desk.dialog != shown_) ImGui::CloseCurrentPopup();
        if (!stays) open = false;
        ImGui::EndPopup();
    }
    if (open) return;
    if (shown_ == Kind::FirstSteps) desk.preferences.hasBegun = true;
    if (desk.dialog == shown_) desk.dialog = Kind::None;
    shown_ = Kind::None;
}

}  // namespace kelmo
