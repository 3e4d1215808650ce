#include "app/window/Widgets.h"

#include <imgui/imgui.h>

#include <algorithm>

#include "app/window/Desk.h"
#include "app/window/Panels.h"

namespace kelmo {

void Heading(const Desk& desk, const char* text) {
    ImGui::Dummy({0, 3 * desk.look.scale});
    ImGui::PushFont(desk.look.bold);
    ImGui::TextUnformatted(text);
    ImGui::PopFont();
    ImGui::Separator();
}

void Toggle(Desk& desk, const char* name, const char* attribute, const char* tip) {
    bool on = desk.work.node.Is(attribute);
    if (ImGui::Checkbox(name, &on)) desk.work.node.Set(attribute, on);
    Tip(tip);
}

void Slider(Desk& desk, const char* name, const char* attribute, int index, float least, float most,
            const char* format, const char* tip, bool curved) {
    auto value = static_cast<float>(desk.work.node.Get(attribute, index));
    ImGui::SetNextItemWidth(-76 * desk.look.scale);
    const ImGuiSliderFlags flags = curved ? ImGuiSliderFlags_Logarithmic : 0;
    if (ImGui::SliderFloat(name, &value, least, most, format, flags))
        desk.work.node.Set(attribute, value, index);
    Tip(tip);
}

void IntSlider(Desk& desk, const char* name, const char* attribute, int least, int most,
               const char* tip) {
    int value = desk.work.node.Int(attribute);
    ImGui::SetNextItemWidth(-76 * desk.look.scale);
    if (ImGui::SliderInt(name, &value, least, most)) desk.work.node.Set(attribute, value);
    Tip(tip);
}

void Choice(Desk& desk, const char* name, const char* attribute,
            std::initializer_list<std::pair<const char*, int>> choices, const char* tip) {
    const int value = desk.work.node.Int(attribute);
    const auto now = std::ranges::find(choices, value, [](const auto& c) { return c.second; });
    ImGui::SetNextItemWidth(-76 * desk.look.scale);
    if (ImGui::BeginCombo(name, now == choices.end() ? "" : now->first)) {
        for (const auto& [text, number] : choices)
            if (ImGui::Selectable(text, number == value)) desk.work.node.Set(attribute, number);
        ImGui::EndCombo();
    }
    Tip(tip);
}

}  // namespace kelmo
