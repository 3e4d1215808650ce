#include "app/window/ImGuiInput.h"

#include <imgui/imgui.h>

#include <algorithm>
#include <cfloat>
#include <iterator>

#include "app/window/Keys.h"

namespace kelmo {

namespace {

using Kind = minihost::WindowEvent::Kind;

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

void Apply(const minihost::WindowEvent& event) {
    ImGuiIO& io = ImGui::GetIO();
    switch (event.kind) {
        case Kind::Leave:
            io.MousePos = {-FLT_MAX, -FLT_MAX};
            return;
        case Kind::Focus:
            io.AddFocusEvent(true);
            return;
        case Kind::Unfocus:
            std::ranges::fill(io.KeysDown, false);
            io.AddFocusEvent(false);
            return;
        case Kind::Wheel:
            io.MouseWheel += event.wheel;
            io.MouseWheelH += event.wheelAcross;
            break;
        case Kind::KeyDown:
        case Kind::KeyUp: {
            const bool down = event.kind == Kind::KeyDown;
            const auto key = std::ranges::find(kKeys, keys::Plain(event.key), &WidgetKey::symbol);
            if (key != std::end(kKeys)) io.KeysDown[key - kKeys] = down;
            if (down && !event.control && !event.alt) io.AddInputCharactersUTF8(event.text.c_str());
            break;
        }
        default:
            io.MousePos = {static_cast<float>(event.x), static_cast<float>(event.y)};
            if (event.kind != Kind::Motion)
                io.MouseDown[ButtonOf(event.button)] = event.kind == Kind::Press;
    }
    io.KeyShift = event.shift;
    io.KeyCtrl = event.control;
    io.KeyAlt = event.alt;
}

}  // namespace

void ImGuiInput::Begin() {
    ImGuiIO& io = ImGui::GetIO();
    for (size_t i = 0; i < std::size(kKeys); ++i) io.KeyMap[kKeys[i].key] = static_cast<int>(i);
}

bool ImGuiInput::Feed() {
    bool acted = false, moved = false;
    while (!events_.empty()) {
        const Kind kind = events_.front().kind;
        const bool acts = kind == Kind::Press || kind == Kind::Release || kind == Kind::KeyDown ||
                          kind == Kind::KeyUp;
        // A place belongs to what is done there, and a drag comes to where it is let go.
        if (acted && (acts || kind == Kind::Motion || kind == Kind::Leave)) return true;
        if (moved && kind == Kind::Release) return true;
        moved = moved || kind == Kind::Motion;
        Apply(events_.front());
        events_.pop_front();
        acted = acted || acts;
    }
    return false;
}

}  // namespace kelmo
