#include "app/window/Look.h"

#include <filesystem>

namespace kelmo {

namespace {

constexpr char kFonts[] = "/usr/share/fonts/truetype/dejavu/";
constexpr float kSize = 13.5f;

ImFont* LoadFont(const char* name, float size) {
    const std::string path = std::string(kFonts) + name;
    std::error_code missing;
    ImFontAtlas& fonts = *ImGui::GetIO().Fonts;
    if (!std::filesystem::exists(path, missing)) return fonts.AddFontDefault();
    static const ImWchar kGlyphs[] = {0x20, 0x24f, 0x2010, 0x2027, 0x2190, 0x2193, 0};
    return fonts.AddFontFromFileTTF(path.c_str(), size, nullptr, kGlyphs);
}

void SetColors(ImGuiStyle& style) {
    const auto set = [&style](std::initializer_list<ImGuiCol> which, float r, float g, float b,
                              float a = 1) {
        for (const ImGuiCol color : which) style.Colors[color] = ImVec4(r, g, b, a);
    };
    set({ImGuiCol_Text}, 0.88f, 0.88f, 0.89f);
    set({ImGuiCol_TextDisabled}, 0.52f, 0.53f, 0.55f);
    set({ImGuiCol_WindowBg, ImGuiCol_MenuBarBg}, 0.155f, 0.158f, 0.166f);
    set({ImGuiCol_PopupBg}, 0.19f, 0.193f, 0.202f, 0.98f);
    set({ImGuiCol_ChildBg}, 0, 0, 0, 0);
    set({ImGuiCol_Border}, 0.09f, 0.09f, 0.10f);
    set({ImGuiCol_Separator}, 0.27f, 0.28f, 0.30f);
    set({ImGuiCol_FrameBg}, 0.105f, 0.108f, 0.115f);
    set({ImGuiCol_FrameBgHovered}, 0.21f, 0.215f, 0.23f);
    set({ImGuiCol_FrameBgActive}, 0.25f, 0.255f, 0.27f);
    set({ImGuiCol_TitleBg, ImGuiCol_TitleBgActive}, 0.12f, 0.122f, 0.13f);
    set({ImGuiCol_Button}, 0.245f, 0.25f, 0.265f);
    set({ImGuiCol_ButtonHovered}, 0.31f, 0.315f, 0.33f);
    set({ImGuiCol_ButtonActive}, 0.72f, 0.42f, 0.17f);
    set({ImGuiCol_Header}, 0.60f, 0.36f, 0.15f);
    set({ImGuiCol_HeaderHovered}, 0.27f, 0.275f, 0.29f);
    set({ImGuiCol_HeaderActive}, 0.72f, 0.42f, 0.17f);
    set({ImGuiCol_CheckMark, ImGuiCol_SliderGrab, ImGuiCol_PlotHistogram}, 0.91f, 0.55f, 0.24f);
    set({ImGuiCol_SliderGrabActive}, 1, 0.68f, 0.38f);
    set({ImGuiCol_ScrollbarBg}, 0.12f, 0.122f, 0.13f);
    set({ImGuiCol_ScrollbarGrab}, 0.30f, 0.305f, 0.32f);
    set({ImGuiCol_ModalWindowDimBg}, 0.05f, 0.05f, 0.06f, 0.55f);
    set({ImGuiCol_NavHighlight}, 0.91f, 0.55f, 0.24f);
}

}  // namespace

void Look::Apply(float wanted) {
    scale = wanted;
    plain = LoadFont("DejaVuSans.ttf", kSize * scale);
    bold = LoadFont("DejaVuSans-Bold.ttf", kSize * scale);
    mono = LoadFont("DejaVuSansMono.ttf", kSize * scale);
    ImGui::StyleColorsDark();
    ImGuiStyle& style = ImGui::GetStyle();
    SetColors(style);
    style.WindowPadding = {10, 8};
    style.FramePadding = {7, 4};
    style.ItemSpacing = {7, 5};
    style.ItemInnerSpacing = {6, 4};
    style.FrameRounding = 3;
    style.GrabRounding = 3;
    style.PopupRounding = 4;
    style.WindowRounding = 5;
    style.ScrollbarSize = 11;
    style.GrabMinSize = 5;
    style.WindowBorderSize = 1;
    style.WindowTitleAlign = {0.5f, 0.5f};
    style.ScaleAllSizes(scale);
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;
    io.LogFilename = nullptr;
    // Nothing moves while nobody does anything.
    io.ConfigInputTextCursorBlink = false;
}

}  // namespace kelmo
