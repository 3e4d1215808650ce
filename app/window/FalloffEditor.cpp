#include "app/window/FalloffEditor.h"

#include <imgui/imgui.h>

#include <algorithm>
#include <cmath>

#include "app/cli/ModuleHost.h"
#include "app/window/Desk.h"
#include "app/window/FalloffCurve.h"
#include "app/window/Panels.h"

namespace kelmo {

namespace {

using minihost::Host;

constexpr float kHeight = 96, kGrip = 7;

/// The part of the panel that shows a curve.
struct Canvas {
    ImVec2 corner, size;

    ImVec2 ToScreen(float position, float value) const {
        return {corner.x + position * size.x, corner.y + (1 - value) * size.y};
    }
    FalloffCurve::Point ToCurve(ImVec2 at) const {
        return {std::clamp((at.x - corner.x) / size.x, 0.f, 1.f),
                std::clamp(1 - (at.y - corner.y) / size.y, 0.f, 1.f), FalloffCurve::kSmooth};
    }
};

void Show(const Canvas& canvas, const FalloffCurve& curve, int held) {
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const ImVec2 end{canvas.corner.x + canvas.size.x, canvas.corner.y + canvas.size.y};
    list.AddRectFilled(canvas.corner, end, ImGui::GetColorU32(ImGuiCol_FrameBg), 3);
    for (int i = 1; i < 4; ++i) {
        const float x = canvas.ToScreen(static_cast<float>(i) / 4, 0).x;
        list.AddLine({x, canvas.corner.y}, {x, end.y}, IM_COL32(255, 255, 255, 14));
    }
    constexpr int kSteps = 64;
    ImVec2 before = canvas.ToScreen(0, curve.At(0));
    for (int i = 1; i <= kSteps; ++i) {
        const float at = static_cast<float>(i) / kSteps;
        const ImVec2 next = canvas.ToScreen(at, std::clamp(curve.At(at), 0.f, 1.f));
        list.AddQuadFilled(before, next, {next.x, end.y}, {before.x, end.y},
                           IM_COL32(232, 140, 60, 40));
        list.AddLine(before, next, Look::kAccent, 1.6f);
        before = next;
    }
    for (int i = 0; i < static_cast<int>(curve.points.size()); ++i) {
        const FalloffCurve::Point& p = curve.points[static_cast<size_t>(i)];
        list.AddCircleFilled(canvas.ToScreen(p.position, p.value), i == held ? 5.f : 3.8f,
                             i == held ? IM_COL32_WHITE : IM_COL32(225, 225, 228, 255));
    }
}

int PointAt(const Canvas& canvas, const FalloffCurve& curve, ImVec2 at) {
    int found = -1;
    float least = kGrip * kGrip * 2;
    for (int i = 0; i < static_cast<int>(curve.points.size()); ++i) {
        const FalloffCurve::Point& p = curve.points[static_cast<size_t>(i)];
        const ImVec2 place = canvas.ToScreen(p.position, p.value);
        const float d = (place.x - at.x) * (place.x - at.x) + (place.y - at.y) * (place.y - at.y);
        if (d < least) least = d, found = i;
    }
    return found;
}

void Put(const FalloffCurve& curve, bool second) {
    Host& host = Host::Get();
    if (host.tools.ClassOf(host.tools.current()) != "KelmoToolContext") return;
    RunScript(std::string("KelmoToolContext -e ") + (second ? "-ff2 " : "-ff ") +
                  ScriptText(curve.Text()) + " " + host.tools.current(),
              false);
}

/// What the pointer does to the curve; whether it changed. `held`: the point that is dragged, -1
/// for none.
bool Edit(const Canvas& canvas, FalloffCurve& curve, int& held) {
    const ImVec2 mouse = ImGui::GetIO().MousePos;
    const bool over = ImGui::IsItemHovered();
    if (over && ImGui::IsMouseDoubleClicked(0) && PointAt(canvas, curve, mouse) < 0) {
        curve.points.push_back(canvas.ToCurve(mouse));
        curve.Tidy();
        return true;
    }
    if (over && ImGui::IsMouseClicked(0)) held = PointAt(canvas, curve, mouse);
    if (!ImGui::IsMouseDown(0)) held = -1;
    if (over && ImGui::IsMouseClicked(1) && curve.points.size() > 2)
        if (const int gone = PointAt(canvas, curve, mouse); gone >= 0) {
            curve.points.erase(curve.points.begin() + gone);
            return true;
        }
    if (held < 0 || !ImGui::IsMouseDragging(0, 0)) return false;
    // Between its neighbours, so that it stays itself.
    FalloffCurve::Point& point = curve.points[static_cast<size_t>(held)];
    FalloffCurve::Point to = canvas.ToCurve(mouse);
    const auto neighbour = [&](int at, float none) {
        return at < 0 || at >= static_cast<int>(curve.points.size())
                   ? none
                   : curve.points[static_cast<size_t>(at)].position;
    };
    to.position = std::clamp(to.position, neighbour(held - 1, 0), neighbour(held + 1, 1));
    to.kind = point.kind;
    const bool moved = !(to == point);
    point = to;
    return moved;
}

}  // namespace

void DrawFalloffEditor(Desk& desk) {
    SculptNode& node = desk.work.node;
    const minihost::NodePtr graph = Host::Get().scene.Find(node.name());
    if (!graph) return ImGui::TextDisabled("No mesh.");
    const bool second = node.mode() >= 8;
    FalloffCurve curve = FalloffCurve::Of(*graph, second ? "falloff2" : "falloff");
    Canvas canvas{ImGui::GetCursorScreenPos(),
                  {ImGui::GetContentRegionAvail().x, kHeight * desk.look.scale}};
    ImGui::InvisibleButton("falloff", canvas.size,
                           ImGuiButtonFlags_MouseButtonLeft | ImGuiButtonFlags_MouseButtonRight);
    static int held = -1;
    if (Edit(canvas, curve, held)) Put(curve, second);
    Show(canvas, curve, held);
    if (held < 0)
        Tip("How the brush acts from its centre, left, to its rim. Drag a point, double-click to "
            "add "
            "one, right-click to take one away.");
    const float quarter = (canvas.size.x - 3 * ImGui::GetStyle().ItemSpacing.x) / 4;
    bool first = true;
    for (const FalloffPreset& preset : FalloffPresets()) {
        if (!first) ImGui::SameLine();
        first = false;
        if (ImGui::Button(preset.name, {quarter, 0})) Put(preset.curve, second);
        Tip(preset.tip);
    }
    bool on = node.Is(second ? "useFalloff2" : "useFalloff");
    if (ImGui::Checkbox("Use the curve", &on)) node.Set(second ? "useFalloff2" : "useFalloff", on);
    Tip("Off: the brush acts fully up to its rim.");
}

}  // namespace kelmo
