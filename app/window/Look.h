#pragma once

#include <imgui/imgui.h>

namespace kelmo {

/// The colours and fonts of the window.
struct Look {
    static constexpr ImU32 kAccent = IM_COL32(232, 140, 60, 255),
                           kWarning = IM_COL32(240, 200, 90, 255),
                           kError = IM_COL32(240, 110, 100, 255),
                           kFaint = IM_COL32(150, 152, 158, 255);

    /// Takes them for Dear ImGui's current context. `scale`: 1 for a usual screen.
    void Apply(float scale);

    ImFont *plain = nullptr, *bold = nullptr, *mono = nullptr;
    float scale = 1;
};

}  // namespace kelmo
