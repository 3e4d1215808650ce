#include "app/window/Panels.h"

#include <fmt/core.h>
#include <imgui/imgui.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "app/window/Brushes.h"
#include "app/window/Desk.h"
#include "app/window/FalloffEditor.h"
#include "app/window/PatternsPanel.h"
#include "app/window/Widgets.h"
#include "core/sculpt/LNode.h"

namespace kelmo {

namespace {

using minihost::WindowPlace;

constexpr int kDock = 256, kMenu = 27, kStatus = 25, kLeastView = 120;
constexpr ImGuiWindowFlags kFixed = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                    ImGuiWindowFlags_NoSavedSettings |
                                    ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoNav;

ImVec2 Corner(const WindowPlace& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y)};
}
ImVec2 Extent(const WindowPlace& p) {
    return {static_cast<float>(p.width), static_cast<float>(p.height)};
}

/// A window of Dear ImGui that fills a place, while it lives.
class Pane {
  public:
    Pane(const char* name, const WindowPlace& place, ImGuiWindowFlags more = 0) {
        ImGui::SetNextWindowPos(Corner(place));
        ImGui::SetNextWindowSize(Extent(place));
        ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, 0);
        ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
        const ImGuiWindowFlags scrolls = more & ImGuiWindowFlags_AlwaysVerticalScrollbar
                                             ? ImGuiWindowFlags(ImGuiWindowFlags_NoScrollbar)
                                             : ImGuiWindowFlags(0);
        ImGui::Begin(name, nullptr,
                     (kFixed & ~scrolls) | (more & ~ImGuiWindowFlags_AlwaysVerticalScrollbar));
        ImGui::PopStyleVar(2);
    }
    ~Pane() { ImGui::End(); }
    Pane(const Pane&) = delete;
    Pane& operator=(const Pane&) = delete;
};

float Half() {
    return (ImGui::GetContentRegionAvail().x - ImGui::GetStyle().ItemSpacing.x) / 2;
}

void Run(Desk& desk, const Action& action) {
    desk.Later(action.run);
}

/// A button for an action; lit while it is on.
void Button(Desk& desk, const char* id, float width = -1, const char* name = nullptr) {
    const Action& action = desk.actions.Get(id);
    const bool on = action.isOn && action.isOn();
    if (on) ImGui::PushStyleColor(ImGuiCol_Button, ImGui::GetStyle().Colors[ImGuiCol_Header]);
    if (ImGui::Button(name ? name : action.name.c_str(), {width, 0})) Run(desk, action);
    if (on) ImGui::PopStyleColor();
    Tip(action);
}

void Check(Desk& desk, const char* id) {
    const Action& action = desk.actions.Get(id);
    bool on = action.isOn();
    if (ImGui::Checkbox(action.name.c_str(), &on)) Run(desk, action);
    Tip(action);
}

void DrawBrush(Desk& desk, const Brush& brush, float width) {
    const int affects = desk.work.node.affects();
    const bool useful = affects == 0 || Paints(brush.mode);
    const Action& action = desk.actions.Get("brush" + std::to_string(brush.mode));
    const bool on = action.isOn();
    const float alpha = useful ? 1.f : 0.4f;
    ImGui::PushStyleVar(ImGuiStyleVar_Alpha, ImGui::GetStyle().Alpha * alpha);
    ImGui::PushStyleVar(ImGuiStyleVar_ButtonTextAlign, {0.08f, 0.5f});
    if (on) ImGui::PushStyleColor(ImGuiCol_Button, ImGui::GetStyle().Colors[ImGuiCol_Header]);
    if (ImGui::Button(brush.name, {width, 0})) Run(desk, action);
    if (on) ImGui::PopStyleColor();
    ImGui::PopStyleVar(2);
    if (*brush.key) {
        const ImVec2 size = ImGui::CalcTextSize(brush.key), corner = ImGui::GetItemRectMax();
        ImGui::GetWindowDrawList()->AddText(
            {corner.x - size.x - 5, corner.y - size.y - ImGui::GetStyle().FramePadding.y},
            Look::kFaint, brush.key);
    }
    if (!ImGui::IsItemHovered()) return;
    ImGui::BeginTooltip();
    ImGui::PushTextWrapPos(320 * desk.look.scale);
    ImGui::TextUnformatted(brush.tip);
    const auto with = [](const char* key, int mode, int own) {
        const Brush* other = mode == own ? nullptr : FindBrush(mode);
        if (other) ImGui::TextDisabled("%s: %s", key, other->name);
    };
    with("Shift", VantrelSDK::GetShiftMode(brush.mode), brush.mode);
    with("Ctrl", VantrelSDK::GetCtrlMode(brush.mode), brush.mode);
    if (*brush.key) ImGui::TextDisabled("Key: %s", brush.key);
    if (!useful) ImGui::TextDisabled("Moves geometry only.");
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

void DrawBrushes(Desk& desk, std::span<const Brush> brushes) {
    const float half = Half();
    for (size_t i = 0; i < brushes.size(); ++i) {
        if (i % 2) ImGui::SameLine();
        DrawBrush(desk, brushes[i], half);
    }
}

void DrawAffects(Desk& desk) {
    const float third =
        (ImGui::GetContentRegionAvail().x - 2 * ImGui::GetStyle().ItemSpacing.x) / 3;
    Button(desk, "geometry", third, "Geometry");
    ImGui::SameLine();
    Button(desk, "colour", third, "Colour");
    ImGui::SameLine();
    Button(desk, "stencil", third, "Stencil");
}

void DrawPaint(Desk& desk) {
    SculptNode& node = desk.work.node;
    float color[3];
    node.GetColor(color);
    ImGui::SetNextItemWidth(-1);
    if (node.affects() == 1) {
        if (ImGui::ColorEdit3("##colour", color, ImGuiColorEditFlags_PickerHueWheel))
            node.SetColor(color);
        Tip("The colour that brushes paint. Click the field for a wheel.");
    } else {
        float grey = (color[0] + color[1] + color[2]) / 3;
        if (ImGui::SliderFloat("##grey", &grey, 0, 1, "protects %.2f")) {
            const float grey3[3] = {grey, grey, grey};
            node.SetColor(grey3);
        }
        Tip("How much of the surface's motion the stencil takes away.");
    }
    const auto run = [&desk](const char* name, int command, const char* tip) {
        const float third =
            (ImGui::GetWindowContentRegionMax().x - ImGui::GetWindowContentRegionMin().x -
             2 * ImGui::GetStyle().ItemSpacing.x) /
            3;
        if (ImGui::Button(name, {third, 0}))
            desk.Later([&desk, command] {
                // What undo takes back.
                RunScript("KelmoStroke");
                desk.work.node.Run(command);
                desk.work.MarkDirty();
            });
        Tip(tip);
    };
    run("Fill", 108, "Paints all of it.");
    ImGui::SameLine();
    run("Clear", 106, "Takes all of the paint away.");
    ImGui::SameLine();
    run("Invert", 107, "Turns it into its opposite.");
    if (node.affects() == 2) {
        Toggle(desk, "Stencil protects", "useStencil",
               "What is painted red is left alone by brushes.");
    }
}

void DrawBrushSettings(Desk& desk) {
    SculptNode& node = desk.work.node;
    const int mode = node.mode();
    Slider(desk, "Size", "toolSize", mode, 0.002f, 0.5f, "%.3f",
           "The brush's radius, as a share of the view's width. Keys: [ and ], or hold S and drag "
           "in the view.");
    Slider(desk, "Strength", node.strength(), mode, 0.001f, 5, "%.3f",
           "How much a brush does. Keys: - and =, or hold D and drag in the view.");
    if (mode >= 8) {
        Choice(desk, "Direction", "pushPullMode",
               {{"Along the view", 0}, {"Own normals", 1}, {"Mean normal", 2}},
               "Where Brush Pull and Push move the surface to: towards the eye, each vertex along "
               "its own normal, "
               "or all along the mean normal under the brush.");
        Toggle(desk, "Accumulate", "accumulate",
               "A stroke goes on building up where it passes again; off, it reaches a depth and "
               "stays.");
    }
    if (mode == 12)
        IntSlider(desk, "Rounds", "brushSmoothIterations", 1, 20, "How often each step smooths.");
    if (mode == 13)
        IntSlider(desk, "Rounds", "brushSharpenIterations", 1, 20, "How often each step sharpens.");
    if (mode == 5)
        IntSlider(desk, "Rounds", "sculptSharpenIterations", 1, 20, "How often it sharpens.");
    if (mode == 6)
        IntSlider(desk, "Rounds", "sculptSmoothIterations", 1, 20, "How often it smooths.");
    Choice(desk, "Symmetry", "symmetry", {{"None", 4}, {"X", 1}, {"Y", 2}, {"Z", 3}},
           "Mirrors each stroke in a plane through the origin. Key: X");
}

void DrawMask(Desk& desk) {
    Toggle(desk, "Mask", "dynMasksOn",
           "Keeps brushes off where the view shows it red. It follows when the view stands still.");
    const SculptNode& node = desk.work.node;
    if (!node.Is("dynMasksOn")) return;
    Choice(desk, "Keeps off", "dynMaskActive",
           {{"What faces the view", 0}, {"What turns away", 1}, {"What lies open", 2}},
           "What brushes do not reach.");
    Slider(desk, "Amount", "dynMaksCeiling", -1, 0, 1, "%.2f", "How much of it is kept off.");
    if (node.Int("dynMaskActive") == 2) return;
    IntSlider(desk, "Turn", "dynMaskAlt", -180, 180,
              "The direction that counts, in degrees around; 0 is the view's.");
    IntSlider(desk, "Height", "dynMaskAzm", -180, 0, "Its height: -90 is the view's.");
}

void DrawLeft(Desk& desk, const WindowPlace& place) {
    const Pane pane("left", place, ImGuiWindowFlags_AlwaysVerticalScrollbar);
    Button(desk, "sculpt", Half());
    ImGui::SameLine();
    Button(desk, "pick");
    ImGui::Dummy({0, 1});
    DrawAffects(desk);
    if (desk.work.node.affects() != 0) DrawPaint(desk);
    Heading(desk, "Brushes");
    DrawBrushes(desk, PaintBrushes());
    if (desk.work.node.affects() == 0) {
        ImGui::TextDisabled("By dragging");
        DrawBrushes(desk, DragBrushes());
    }
    Heading(desk, "Brush");
    DrawBrushSettings(desk);
    DrawPatterns(desk);
    Heading(desk, "Falloff");
    DrawFalloffEditor(desk);
    DrawMask(desk);
}

std::string Thousands(int number) {
    std::string text = std::to_string(number);
    for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<size_t>(at), 1, ' ');
    return text;
}

void DrawLevels(Desk& desk) {
    Heading(desk, "Levels");
    SculptNode& node = desk.work.node;
    const auto& levels = node.levels();
    for (int i = static_cast<int>(levels.size()) - 1; i >= 0; --i) {
        const SculptNode::Level& level = levels[static_cast<size_t>(i)];
        const std::string name = fmt::format("Level {}##level", i);
        if (ImGui::Selectable(name.c_str(), i == node.activeLevel()) && i != node.activeLevel())
            desk.Later([&desk, i] {
                desk.work.node.Run(92, i);
                desk.work.node.ReadLevels();
            });
        Tip(fmt::format("{} vertices, {} triangles. Click to sculpt on it; keys: PageUp, PageDown",
                        Thousands(level.vertices), Thousands(level.faces))
                .c_str());
        const std::string count = Thousands(level.faces) + " tri";
        ImGui::SameLine(ImGui::GetContentRegionMax().x - ImGui::CalcTextSize(count.c_str()).x);
        if (i == node.activeLevel())
            ImGui::TextUnformatted(count.c_str());
        else
            ImGui::TextDisabled("%s", count.c_str());
    }
    Button(desk, "addLevel", Half());
    ImGui::SameLine();
    Button(desk, "deleteLevel");
}

void DrawDisplay(Desk& desk) {
    Heading(desk, "Display");
    Choice(desk, "Show", "displayMode",
           {{"Edges", 0},
            {"All edges", 1},
            {"Surface", 2},
            {"Surface, edges", 3},
            {"Surface, all", 4}},
           "How the surface is shown. Key for edges over it: E");
    Check(desk, "shadow");
    ImGui::SameLine(Half() + 10);
    Check(desk, "occlusion");
    const int affects = desk.work.node.affects();
    if (desk.work.node.Is("useShadow", affects)) {
        IntSlider(desk, "Softness", "shadowFilter", 1, 18, "How soft the edge of the shadow is.");
        IntSlider(desk, "Light turn", "shadowAzm", -180, 180,
                  "Where the light stands, in degrees around.");
        IntSlider(desk, "Height", "shadowAlt", -180, 180, "How high it stands, in degrees.");
    }
    if (desk.work.node.Is("useSSAO", affects)) {
        Slider(desk, "Reach", "SSAOradius", -1, 0.001f, 0.1f, "%.3f", "How far occlusion looks.");
        IntSlider(desk, "Samples", "SSAOsamples", 4, 64,
                  "How often it looks: smoother and slower.");
    }
    Toggle(desk, "Shaders", "useShaders", "Light for each pixel; off, plain light.");
    ImGui::SameLine(Half() + 10);
    Toggle(desk, "Highlights", "useSpecular", "The surface shines a little.");
    Toggle(desk, "Hide backs", "cullBackface", "Leaves out faces that look away.");
    ImGui::SameLine(Half() + 10);
    Check(desk, "textures");
    if (desk.work.node.Is("showTextures"))
        Slider(desk, "Opacity", "textureOpac", -1, 0, 1, "%.2f",
               "How much of the textures is seen over the plain surface.", false);
}

void DrawSelection(Desk& desk) {
    Heading(desk, "Selection");
    const float half = Half();
    constexpr const char* kNames[][2] = {{"expand", "Expand"}, {"reduce", "Reduce"},
                                         {"hide", "Hide"},     {"show", "Show all"},
                                         {"deselect", "None"}, {"invertHidden", "Swap hidden"}};
    int at = 0;
    for (const auto& [id, name] : kNames) {
        if (at++ % 2) ImGui::SameLine();
        Button(desk, id, half, name);
    }
}

void DrawMeshes(Desk& desk) {
    Heading(desk, "Meshes");
    for (const std::string& mesh : SculptNode::Meshes()) {
        if (ImGui::Selectable((mesh + "##mesh").c_str(), mesh == desk.work.node.mesh()))
            desk.Later([&desk, mesh] { desk.work.Sculpt(mesh); });
        Tip("Sculpts this mesh.");
    }
}

void DrawRight(Desk& desk, const WindowPlace& place) {
    const Pane pane("right", place, ImGuiWindowFlags_AlwaysVerticalScrollbar);
    DrawLevels(desk);
    DrawDisplay(desk);
    DrawSelection(desk);
    DrawMeshes(desk);
}

void DrawMenu(Desk& desk, const WindowPlace& place) {
    const Pane pane("menu", place, ImGuiWindowFlags_MenuBar);
    if (!ImGui::BeginMenuBar()) return;
    constexpr const char* kMenus[] = {"File", "Edit", "View", "Levels", "Brushes", "Help"};
    for (const char* menu : kMenus) {
        if (!ImGui::BeginMenu(menu)) continue;
        for (const Action& action : desk.actions.all()) {
            if (action.menu != menu) continue;
            const bool on = action.isOn && action.isOn();
            if (ImGui::MenuItem(action.name.c_str(), action.key.c_str(), on)) Run(desk, action);
            if (!action.tip.empty()) Tip(action.tip.c_str());
        }
        if (std::string(menu) == "File" && !desk.preferences.recent.empty()) {
            ImGui::Separator();
            for (const std::string& path : desk.preferences.recent)
                if (ImGui::MenuItem(path.c_str()))
                    desk.AskThen([&desk, path] { OpenFile(desk, path); });
        }
        ImGui::EndMenu();
    }
    const std::string title = desk.work.name() + (desk.work.isDirty() ? " (changed)" : "");
    ImGui::SameLine(static_cast<float>(place.width) - ImGui::CalcTextSize(title.c_str()).x -
                    14 * desk.look.scale);
    ImGui::TextDisabled("%s", title.c_str());
    ImGui::EndMenuBar();
}

void DrawStatus(Desk& desk, const WindowPlace& place) {
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, {10 * desk.look.scale, 4 * desk.look.scale});
    const Pane pane("status", place);
    ImGui::PopStyleVar();
    if (const auto* last = desk.log.last()) {
        const ImU32 color = last->kind == MessageLog::Kind::Error     ? Look::kError
                            : last->kind == MessageLog::Kind::Warning ? Look::kWarning
                                                                      : Look::kFaint;
        ImGui::PushStyleColor(ImGuiCol_Text, color);
        ImGui::TextUnformatted(last->text.substr(0, last->text.find('\n')).c_str());
        ImGui::PopStyleColor();
        if (ImGui::IsItemClicked()) desk.dialog = Desk::Dialog::Log;
        Tip((last->text + "\n\nClick for all messages.").c_str());
    }
    const Brush* brush = FindBrush(desk.work.node.mode());
    const std::string tool = IsSelecting() ? "Select faces" : brush ? brush->name : "";
    const std::string text = fmt::format("{}    {}", tool, desk.work.node.mesh());
    ImGui::SameLine(static_cast<float>(place.width) - ImGui::CalcTextSize(text.c_str()).x -
                    14 * desk.look.scale);
    ImGui::TextUnformatted(text.c_str());
}

}  // namespace

Layout::Layout(const Desk& desk, int width, int height) {
    const auto scaled = [&desk](int size) {
        return static_cast<int>(static_cast<float>(size) * desk.look.scale);
    };
    const int dock = scaled(kDock), least = scaled(kLeastView);
    hasLeft = desk.preferences.leftDock && width >= dock + least;
    hasRight = desk.preferences.rightDock && width >= dock * (hasLeft ? 2 : 1) + least;
    hasBars = height >= scaled(kMenu + kStatus) + least && width >= least;
    const int top = hasBars ? scaled(kMenu) : 0, bottom = hasBars ? scaled(kStatus) : 0;
    const int start = hasLeft ? dock : 0, end = width - (hasRight ? dock : 0);
    menu = {0, 0, width, top};
    status = {0, height - bottom, width, bottom};
    left = {0, top, dock, height - top - bottom};
    right = {end, top, dock, height - top - bottom};
    view = {start, top, std::max(1, end - start), std::max(1, height - top - bottom)};
}

void Tip(const char* text) {
    if (!*text || !ImGui::IsItemHovered()) return;
    ImGui::BeginTooltip();
    ImGui::PushTextWrapPos(ImGui::GetFontSize() * 24);
    ImGui::TextUnformatted(text);
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

void Tip(const Action& action) {
    if (!ImGui::IsItemHovered()) return;
    std::string text = action.tip.empty() ? action.name : action.tip;
    if (!action.key.empty()) text += "\nKey: " + action.key;
    Tip(text.c_str());
}

void DrawPanels(Desk& desk, const Layout& layout) {
    if (layout.hasLeft) DrawLeft(desk, layout.left);
    if (layout.hasRight) DrawRight(desk, layout.right);
    if (!layout.hasBars) return;
    DrawMenu(desk, layout.menu);
    DrawStatus(desk, layout.status);
}

}  // namespace kelmo
