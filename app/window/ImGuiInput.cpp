#include "app/window/ImGuiInput.h"

#include <imgui/imgui.h>

#include <algorithm>
#include <iterator>

#include "app/window/Keys.h"

namespace kelmo {

namespace {

struct WidgetKey {
    ImGuiKey key;
    unsigned long symbol;
};
constexpr WidgetKey kKeys[] = {
    {ImGuiKey_Tab, keys::kTab},
    {ImGuiKey_LeftArrow, keys::kLeft},
    {ImGuiKey_RightArrow, keys::kRight},
    {ImGuiKey_UpArrow, keys::kUp},
    {ImGuiKey_DownArrow, keys::kDown},
    {ImGuiKey_PageUp, keys::kPageUp},
    {ImGuiKey_PageDown, keys::kPageDown},
    {ImGuiKey_Home, keys::kHome},
    {ImGuiKey_End, keys::kEnd},
    {ImGuiKey_Insert, keys::kInsert},
    {ImGuiKey_Delete, keys::kDelete},
    {ImGuiKey_Backspace, keys::kBackspace},
    {ImGuiKey_Enter, keys::kEnter},
    {ImGuiKey_KeyPadEnter, keys::kKeypadEnter},
    {ImGuiKey_Escape, keys::kEscape},
    {ImGuiKey_A, 'a'},
    {ImGuiKey_C, 'c'},
    {ImGuiKey_V, 'v'},
    {ImGuiKey_X, 'x'},
    {ImGuiKey_Y, 'y'},
    {ImGuiKey_Z, 'z'},
};

/// X numbers its buttons left, middle, right.
int ButtonOf(int button) {
    return button == 2 ? 2 : button == 3 ? 1 : 0;
}

}  // namespace

void SetImGuiKeys() {
    ImGuiIO& io = ImGui::GetIO();
    for (size_t i = 0; i < std::size(kKeys); ++i) io.KeyMap[kKeys[i].key] = static_cast<int>(i);
}

void TellImGui(const minihost::WindowEvent& event) {
    using Kind = minihost::WindowEvent::Kind;
    ImGuiIO& io = ImGui::GetIO();
    switch (event.kind) {
        case Kind::Motion:
            io.AddMousePosEvent(static_cast<float>(event.x), static_cast<float>(event.y));
            break;
        case Kind::Leave: io.AddMousePosEvent(-1e6f, -1e6f); break;
        case Kind::Press:
        case Kind::Release:
            io.AddMousePosEvent(static_cast<float>(event.x), static_cast<float>(event.y));
            io.AddMouseButtonEvent(ButtonOf(event.button), event.kind == Kind::Press);
            break;
        case Kind::Wheel: io.AddMouseWheelEvent(event.wheelAcross, event.wheel); break;
        case Kind::KeyDown:
        case Kind::KeyUp: {
            const bool down = event.kind == Kind::KeyDown;
            const auto key = std::ranges::find(kKeys, keys::Plain(event.key), &WidgetKey::symbol);
            if (key != std::end(kKeys)) io.KeysDown[key - kKeys] = down;
            const bool typed = down && !event.control && !event.alt;
            if (typed) io.AddInputCharactersUTF8(event.text.c_str());
            break;
        }
        case Kind::Focus: io.AddFocusEvent(true); break;
        case Kind::Unfocus:
            std::ranges::fill(io.KeysDown, false);
            io.AddFocusEvent(false);
            break;
    }
    if (event.kind == Kind::Focus || event.kind == Kind::Unfocus || event.kind == Kind::Leave)
        return;
    io.KeyShift = event.shift;
    io.KeyCtrl = event.control;
    io.KeyAlt = event.alt;
}

}  // namespace kelmo
