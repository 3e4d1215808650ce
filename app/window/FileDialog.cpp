#include "app/window/FileDialog.h"

#include <fmt/core.h>
#include <imgui/imgui.h>
#include <imgui/imgui_stdlib.h>

#include <algorithm>
#include <cctype>

#include "app/window/Desk.h"

namespace kelmo {

namespace fs = std::filesystem;

namespace {

std::string Lower(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string SizeText(std::uintmax_t bytes) {
    if (bytes < 10'000) return fmt::format("{} B", bytes);
    if (bytes < 10'000'000) return fmt::format("{} kB", bytes / 1000);
    return fmt::format("{} MB", bytes / 1'000'000);
}

}  // namespace

void FileDialog::Ask(Request request, const std::string& folder) {
    request_ = std::move(request);
    name_ = request_.name;
    overwrites_ = false;
    std::error_code failed;
    GoTo(fs::is_directory(folder, failed) ? fs::path(folder) : fs::current_path(failed));
}

void FileDialog::GoTo(const fs::path& folder) {
    folder_ = folder.lexically_normal();
    place_ = folder_;
    Read();
}

void FileDialog::Read() {
    entries_.clear();
    problem_.clear();
    std::error_code failed;
    for (fs::directory_iterator at(folder_, failed), end; !failed && at != end;
         at.increment(failed)) {
        std::error_code unknown;
        const std::string name = at->path().filename();
        const bool isFolder = at->is_directory(unknown);
        const auto fits = [&](const std::string& ending) { return Lower(name).ends_with(ending); };
        if (name.starts_with(".") || (!isFolder && !std::ranges::any_of(request_.endings, fits)))
            continue;
        entries_.push_back({name, isFolder, isFolder ? 0 : at->file_size(unknown)});
    }
    if (failed) problem_ = place_ + " can't be read: " + failed.message();
    std::ranges::sort(entries_, [](const Entry& a, const Entry& b) {
        return std::pair(!a.isFolder, Lower(a.name)) < std::pair(!b.isFolder, Lower(b.name));
    });
}

bool FileDialog::Choose(Desk& desk) {
    std::error_code failed;
    const fs::path path = folder_ / name_;
    if (name_.empty()) return false;
    if (fs::is_directory(path, failed)) {
        name_.clear();
        GoTo(path);
        return false;
    }
    const bool exists = fs::exists(path, failed);
    if (!request_.writes && !exists) {
        problem_ = "There is no file " + name_ + " here.";
        return false;
    }
    if (request_.writes && exists && !overwrites_) {
        overwrites_ = true;
        problem_ = name_ + " is there already. Choose again to write over it.";
        return false;
    }
    desk.preferences.folder = folder_;
    desk.Later([chosen = request_.chosen, file = path.string()] { chosen(file); });
    return true;
}

void FileDialog::DrawList(bool& picked) {
    if (ImGui::Selectable("..", false, ImGuiSelectableFlags_DontClosePopups))
        return GoTo(folder_.parent_path());
    for (const Entry& entry : entries_) {
        const std::string shown = entry.name + (entry.isFolder ? "/" : "");
        const bool clicked = ImGui::Selectable(
            shown.c_str(), entry.name == name_,
            ImGuiSelectableFlags_DontClosePopups | ImGuiSelectableFlags_AllowDoubleClick);
        if (!entry.isFolder) {
            const std::string size = SizeText(entry.size);
            ImGui::SameLine(ImGui::GetContentRegionMax().x - ImGui::CalcTextSize(size.c_str()).x);
            ImGui::TextDisabled("%s", size.c_str());
        }
        if (!clicked) continue;
        if (entry.isFolder) return GoTo(fs::path(folder_ / entry.name));
        name_ = entry.name;
        overwrites_ = false;
        picked = ImGui::IsMouseDoubleClicked(0);
        return;
    }
}

bool FileDialog::Draw(Desk& desk) {
    const float scale = desk.look.scale;
    ImGui::SetNextItemWidth(560 * scale);
    if (ImGui::InputText("##folder", &place_, ImGuiInputTextFlags_EnterReturnsTrue)) GoTo(place_);
    bool picked = false;
    ImGui::BeginChild("files", {560 * scale, 300 * scale}, true);
    DrawList(picked);
    ImGui::EndChild();
    if (ImGui::IsWindowAppearing()) ImGui::SetKeyboardFocusHere();
    ImGui::SetNextItemWidth(560 * scale);
    if (ImGui::InputText("##name", &name_,
                         ImGuiInputTextFlags_EnterReturnsTrue | ImGuiInputTextFlags_AutoSelectAll))
        picked = true;
    if (ImGui::IsItemEdited()) overwrites_ = false;
    if (!problem_.empty()) {
        ImGui::PushStyleColor(ImGuiCol_Text, Look::kWarning);
        ImGui::TextUnformatted(problem_.c_str());
        ImGui::PopStyleColor();
    }
    if (ImGui::Button(request_.button.c_str(), {110 * scale, 0})) picked = true;
    ImGui::SameLine();
    if (ImGui::Button("Cancel", {110 * scale, 0})) return false;
    return !(picked && Choose(desk));
}

}  // namespace kelmo
