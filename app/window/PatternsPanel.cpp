#include "app/window/PatternsPanel.h"

#include <imgui/imgui.h>

#include <algorithm>

#include "app/window/Desk.h"
#include "app/window/Panels.h"
#include "app/window/Widgets.h"

namespace kelmo {

namespace {

constexpr int kSwatch = SculptNode::kSwatch;

/// Runs of one colour in a row, so that a plain picture costs little.
void DrawSwatch(const SculptNode::Pattern& pattern, ImVec2 corner, float size) {
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const float step = size / kSwatch;
    if (pattern.swatch.empty()) {
        list.AddRect(corner, {corner.x + size, corner.y + size}, Look::kFaint);
        return;
    }
    for (int y = 0; y < kSwatch; ++y)
        for (int x = 0, end; x < kSwatch; x = end) {
            const unsigned color = pattern.swatch[static_cast<size_t>(y * kSwatch + x)];
            for (end = x + 1; end < kSwatch; ++end)
                if (pattern.swatch[static_cast<size_t>(y * kSwatch + end)] != color) break;
            const auto at = [&](int i, float from) { return from + static_cast<float>(i) * step; };
            list.AddRectFilled({at(x, corner.x), at(y, corner.y)},
                               {at(end, corner.x), at(y + 1, corner.y)}, color);
        }
}

void DrawList(Desk& desk) {
    const float size = 40 * desk.look.scale, pad = 4 * desk.look.scale;
    const auto& patterns = desk.work.node.patterns();
    const float width = ImGui::GetContentRegionAvail().x;
    const int columns = std::max(1, static_cast<int>((width + pad) / (size + pad)));
    const int active = desk.work.node.activePattern();
    for (int i = 0; i < static_cast<int>(patterns.size()); ++i) {
        const SculptNode::Pattern& pattern = patterns[static_cast<size_t>(i)];
        if (i % columns) ImGui::SameLine(0, pad);
        const ImVec2 corner = ImGui::GetCursorScreenPos();
        ImGui::PushID(i);
        if (ImGui::InvisibleButton("pattern", {size, size}))
            desk.Later([&desk, i] { desk.work.node.HitPattern(i); });
        ImGui::PopID();
        if (ImGui::IsItemVisible()) DrawSwatch(pattern, corner, size);
        if (i == active || ImGui::IsItemHovered())
            ImGui::GetWindowDrawList()->AddRect(
                {corner.x - 1, corner.y - 1}, {corner.x + size + 1, corner.y + size + 1},
                i == active ? IM_COL32(0, 255, 0, 255) : Look::kFaint, 0, 0, 2);
        Tip((pattern.name + (i == active ? ": click again to sculpt without it."
                                         : ": brushes work as strongly as it is bright."))
                .c_str());
    }
}

void DrawJitter(Desk& desk) {
    SculptNode& node = desk.work.node;
    Toggle(desk, "Random turn", "randPatternRotation", "Each stamp is turned another way.");
    if (node.Is("randPatternRotation"))
        IntSlider(desk, "At most", "maxPatternRotation", 0, 180, "In degrees, either way.");
    Toggle(desk, "Random place", "randPatternOffset", "Each stamp lies beside the pointer.");
    if (node.Is("randPatternOffset"))
        Slider(desk, "Aside", "maxPatternOffset", -1, 0, 4, "%.2f", "At most, in brush radii.",
               false);
    Toggle(desk, "Random size", "randPatternScale", "Each stamp has another size.");
    if (node.Is("randPatternScale")) {
        Slider(desk, "Least", "minPatternScale", -1, 0.05f, 2, "%.2f",
               "The smallest, as a share of the brush.", false);
        Slider(desk, "Most", "maxPatternScale", -1, 0.05f, 2, "%.2f",
               "The largest, as a share of the brush.", false);
    }
    Toggle(desk, "One after another", "useChainPatterns",
           "Stamps are laid side by side, and none in between.");
}

}  // namespace

void DrawPatterns(Desk& desk) {
    Heading(desk, "Patterns");
    DrawList(desk);
    if (ImGui::Button("Add from a file...", {-1, 0})) desk.dialog = Desk::Dialog::Pattern;
    Tip("A picture that shapes and colours the brush.");
    if (desk.work.node.activePattern() < 0) return;
    Choice(desk, "Lies", "patternMode", {{"Under the brush", 0}, {"On the surface", 2}},
           "Under the brush it is a stamp that follows the stroke; on the surface it lies by the "
           "UVs and shows where brushes will work.");
    if (desk.work.node.Int("patternMode") == 2)
        Slider(desk, "Seen", "uvsetpatternOpac", -1, 0, 1, "%.2f", "How much of it is seen.",
               false);
    else
        DrawJitter(desk);
    Toggle(desk, "Brightness is cover", "colorAsAlpha",
           "Its brightness says how much it covers, and it has no colour of its own.");
}

}  // namespace kelmo
