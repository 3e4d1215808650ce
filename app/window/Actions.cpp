#include "app/window/Actions.h"

#include <fmt/core.h>

#include <algorithm>

#include "app/window/Brushes.h"
#include "app/window/Desk.h"

namespace kelmo {

namespace {

using minihost::Host;

constexpr char kTool[] = "KelmoToolContext";

bool IsSculptTool() {
    Host& host = Host::Get();
    return host.tools.ClassOf(host.tools.current()) == kTool;
}

/// A numbered command that changes what is sculpted.
void Change(Desk& desk, int command, int parameter = 0) {
    desk.Later([&desk, command, parameter] {
        desk.work.node.Run(command, parameter);
        desk.work.MarkDirty();
        desk.work.node.ReadLevels();
    });
}

void GoToLevel(Desk& desk, int level) {
    const SculptNode& node = desk.work.node;
    if (level < 0 || level >= static_cast<int>(node.levels().size())) return;
    Change(desk, 92, level);
}

void Step(Desk& desk, const char* attribute, double factor, double most) {
    SculptNode& node = desk.work.node;
    const int mode = node.mode();
    node.Set(attribute, std::clamp(node.Get(attribute, mode) * factor, 0.0005, most), mode);
}

void LookFrom(Desk& desk, const char* camera) {
    if (const std::string why = desk.window->LookThrough(camera); !why.empty()) desk.log.Error(why);
}

void Frame(Desk& desk, bool selected) {
    std::vector<minihost::NodePtr> nodes;
    Host& host = Host::Get();
    if (selected)
        for (const auto& item : host.scene.selection) nodes.push_back(item.node);
    if (nodes.empty() && desk.work.node.exists())
        if (const auto mesh = host.scene.Find(desk.work.node.mesh())) nodes.push_back(mesh);
    host.views.Frame(desk.window->view(), nodes);
    desk.window->Touch();
}

}  // namespace

void OpenFile(Desk& desk, const std::string& path) {
    if (!desk.work.Open(path)) return;
    desk.preferences.Remember(path);
    Frame(desk, false);
}

bool IsSelecting() {
    Host& host = Host::Get();
    return host.tools.ClassOf(host.tools.current()) == "KelmoSelectContext";
}

void SetTool(Desk& desk, bool sculpt) {
    desk.Later([&desk, sculpt] {
        if (sculpt)
            desk.work.Sculpt();
        else
            RunScript("KelmoSel", false);
        desk.window->Redraw();
    });
}

void TakeBrush(Desk& desk, int mode) {
    if (!IsSculptTool()) desk.work.Sculpt();
    Host& host = Host::Get();
    if (IsSculptTool())
        RunScript(fmt::format("{} -e -bm {} {}", kTool, mode, host.tools.current()), false);
    else
        desk.work.node.Set("sculptMode", mode);
    if (desk.work.node.affects() != 0 && !Paints(mode)) Affect(desk, 0);
}

void Affect(Desk& desk, int what) {
    SculptNode& node = desk.work.node;
    node.Set("affectGeometry", what == 0);
    node.Set("affectVertColor", what == 1);
    node.Set("affectStencil", what == 2);
    if (what != 0 && !Paints(node.mode())) TakeBrush(desk, 8);
}

void Actions::Fill(Desk& desk) {
    AddFile(desk);
    AddEdit(desk);
    AddView(desk);
    AddLevels(desk);
    AddBrushes(desk);
    AddHelp(desk);
}

const Action* Actions::Find(const keys::Chord& chord) const {
    if (chord.key == 0) return nullptr;
    const auto fits = [&chord](const Action& action) {
        return keys::Parse(action.key) == chord || keys::Parse(action.otherKey) == chord;
    };
    const auto found = std::ranges::find_if(actions_, fits);
    return found == actions_.end() ? nullptr : &*found;
}

const Action& Actions::Get(const std::string& id) const {
    return *std::ranges::find(actions_, id, &Action::id);
}

void Actions::AddFile(Desk& desk) {
    const auto show = [&desk](Desk::Dialog dialog) {
        return [&desk, dialog] { desk.dialog = dialog; };
    };
    Add({"open",
         "File",
         "Open...",
         "Ctrl+O",
         "Opens a scene, or a mesh (OBJ, PLY) to sculpt.",
         [&desk] { desk.AskThen([&desk] { desk.dialog = Desk::Dialog::Open; }); },
         {},
         ""});
    Add({"import",
         "File",
         "Import...",
         "Ctrl+I",
         "Adds the meshes of a file to the scene.",
         show(Desk::Dialog::Import),
         {},
         ""});
    Add({"save",
         "File",
         "Save",
         "Ctrl+S",
         "Writes the scene with all levels and paint. The old file stays whole until the new one "
         "is.",
         [&desk] {
             if (desk.work.path().empty())
                 desk.dialog = Desk::Dialog::SaveAs;
             else
                 desk.Later([&desk] { desk.work.Save(); });
         },
         {},
         ""});
    Add({"saveAs",
         "File",
         "Save as...",
         "Ctrl+Shift+S",
         "Writes the scene under another name.",
         show(Desk::Dialog::SaveAs),
         {},
         ""});
    Add({"export",
         "File",
         "Export...",
         "Ctrl+E",
         "Writes the sculpted surface, at its finest level, as OBJ or PLY.",
         show(Desk::Dialog::Export),
         {},
         ""});
    Add({"quit",
         "File",
         "Quit",
         "Ctrl+Q",
         "Closes the window. Unsaved work is asked about.",
         [&desk] { desk.AskThen([&desk] { desk.window->Close(); }); },
         {},
         ""});
}

void Actions::AddEdit(Desk& desk) {
    const auto script = [&desk](const char* text) {
        return [&desk, text] {
            desk.Later([&desk, text] {
                RunScript(text);
                desk.work.MarkDirty();
                desk.work.node.Find();
            });
        };
    };
    // What is selected and hidden is seen while the surface is sculpted.
    const auto change = [&desk](int command) {
        return [&desk, command] {
            if (IsSelecting()) desk.Later([&desk] { desk.work.Sculpt(); });
            Change(desk, command);
        };
    };
    Add({"undo", "Edit", "Undo", "Ctrl+Z", "Takes back the last stroke.", script("undo"), {}, ""});
    Add({"redo",
         "Edit",
         "Redo",
         "Ctrl+Shift+Z",
         "Does again what was taken back, where that is possible.",
         script("redo"),
         {},
         "Ctrl+Y"});
    Add({"sculpt", "Edit", "Sculpt", "W", "The brushes work on the surface.",
         [&desk] { SetTool(desk, true); }, [] { return IsSculptTool(); }, ""});
    Add({"pick", "Edit", "Select faces", "Q",
         "Click or drag over faces to select them; brushes keep to what is selected.",
         [&desk] { SetTool(desk, false); }, [] { return IsSelecting(); }, ""});
    Add({"expand",
         "Edit",
         "Expand selection",
         ".",
         "Selects the faces around, too.",
         change(117),
         {},
         ""});
    Add({"reduce",
         "Edit",
         "Reduce selection",
         ",",
         "Leaves out the faces at the rim.",
         change(118),
         {},
         ""});
    Add({"deselect",
         "Edit",
         "Select nothing",
         "Ctrl+D",
         "Brushes work everywhere again.",
         change(116),
         {},
         ""});
    Add({"hide",
         "Edit",
         "Hide selected",
         "H",
         "Hides the selected faces; brushes leave them alone.",
         change(119),
         {},
         ""});
    Add({"show", "Edit", "Show all", "Shift+H", "Shows what was hidden.", change(120), {}, ""});
    Add({"invertHidden",
         "Edit",
         "Invert hidden",
         "Ctrl+H",
         "Hides what is seen and shows what is hidden.",
         change(121),
         {},
         ""});
}

void Actions::AddView(Desk& desk) {
    Add({"frameAll",
         "View",
         "Frame all",
         "A",
         "Shows the whole mesh.",
         [&desk] { Frame(desk, false); },
         {},
         ""});
    Add({"frameSelected",
         "View",
         "Frame selection",
         "F",
         "Shows what is selected.",
         [&desk] { Frame(desk, true); },
         {},
         ""});
    for (const auto& [camera, name, key] : {std::tuple{"persp", "Perspective", "F1"},
                                            {"front", "Front", "F2"},
                                            {"side", "Side", "F3"},
                                            {"top", "Top", "F4"}})
        Add({camera, "View", name, key, "Looks from there.",
             [&desk, camera = camera] { LookFrom(desk, camera); },
             [&desk, camera = camera] { return desk.window->camera() == camera; }, ""});
    const auto toggle = [&desk](const char* attribute, bool array) {
        return [&desk, attribute, array] {
            SculptNode& node = desk.work.node;
            const int index = array ? node.affects() : -1;
            node.Set(attribute, node.Is(attribute, index) ? 0 : 1, index);
        };
    };
    const auto is = [&desk](const char* attribute, bool array) {
        return [&desk, attribute, array] {
            return desk.work.node.Is(attribute, array ? desk.work.node.affects() : -1);
        };
    };
    Add({"wireframe", "View", "Wireframe", "E", "Shows the edges over the surface.",
         [&desk] {
             SculptNode& node = desk.work.node;
             node.Set("displayMode", node.Int("displayMode") == 2 ? 3 : 2);
         },
         [&desk] { return desk.work.node.Int("displayMode") != 2; }, ""});
    Add({"shadow", "View", "Shadow", "Shift+S", "Lets the light cast a shadow.",
         toggle("useShadow", true), is("useShadow", true), ""});
    Add({"occlusion", "View", "Occlusion", "Shift+O", "Darkens creases and hollows.",
         toggle("useSSAO", true), is("useSSAO", true), ""});
    Add({"textures", "View", "Textures", "Shift+T",
         "Shows the images that the mesh's materials name.", toggle("showTextures", false),
         is("showTextures", false), ""});
    Add({"smoothEdges", "View", "Smooth edges", "",
         "Draws each pixel several times. Off, a machine without a graphics card follows the brush "
         "faster.",
         [&desk] {
             desk.preferences.samples = desk.window->samples() > 0 ? 0 : 4;
             desk.window->SetSamples(desk.preferences.samples);
         },
         [&desk] { return desk.window->samples() > 0; }, ""});
    for (const auto& [id, name, dock] :
         {std::tuple{"leftDock", "Brushes at the left", &Preferences::leftDock},
          {"rightDock", "Levels at the right", &Preferences::rightDock}})
        Add({id, "View", name, "", "Shows or hides these panels.",
             [&desk, dock = dock] { desk.preferences.*dock = !(desk.preferences.*dock); },
             [&desk, dock = dock] { return desk.preferences.*dock; }, ""});
    Add({"timings", "View", "Timings", "", "Shows what a frame takes, over the view.",
         [&desk] { desk.stats.shown = !desk.stats.shown; }, [&desk] { return desk.stats.shown; },
         ""});
}

void Actions::AddLevels(Desk& desk) {
    Add({"addLevel",
         "Levels",
         "Add level",
         "Ctrl+L",
         "Divides each quad in four, for finer detail. Lower levels stay, and can be sculpted "
         "still.",
         [&desk] { Change(desk, 97); },
         {},
         ""});
    Add({"deleteLevel",
         "Levels",
         "Delete top level",
         "",
         "Takes away the finest level and its detail.",
         [&desk] { Change(desk, 98); },
         {},
         ""});
    Add({"levelUp",
         "Levels",
         "Finer",
         "PageUp",
         "Sculpts on the next finer level.",
         [&desk] { GoToLevel(desk, desk.work.node.activeLevel() + 1); },
         {},
         ""});
    Add({"levelDown",
         "Levels",
         "Coarser",
         "PageDown",
         "Sculpts on the next coarser level.",
         [&desk] { GoToLevel(desk, desk.work.node.activeLevel() - 1); },
         {},
         ""});
}

void Actions::AddBrushes(Desk& desk) {
    for (const auto brushes : {PaintBrushes(), DragBrushes()})
        for (const Brush& brush : brushes)
            Add({"brush" + std::to_string(brush.mode), "Brushes", brush.name, brush.key, brush.tip,
                 [&desk, mode = brush.mode] { TakeBrush(desk, mode); },
                 [&desk, mode = brush.mode] { return desk.work.node.mode() == mode; }, ""});
    Add({"smaller",
         "Brushes",
         "Smaller brush",
         "[",
         "",
         [&desk] { Step(desk, "toolSize", 1 / 1.15, 0.5); },
         {},
         ""});
    Add({"larger",
         "Brushes",
         "Larger brush",
         "]",
         "",
         [&desk] { Step(desk, "toolSize", 1.15, 0.5); },
         {},
         ""});
    Add({"weaker",
         "Brushes",
         "Weaker brush",
         "-",
         "",
         [&desk] { Step(desk, desk.work.node.strength(), 1 / 1.15, 10); },
         {},
         ""});
    Add({"stronger",
         "Brushes",
         "Stronger brush",
         "=",
         "",
         [&desk] { Step(desk, desk.work.node.strength(), 1.15, 10); },
         {},
         ""});
    Add({"symmetry", "Brushes", "Mirror in X", "X",
         "Does on the other side what the brush does on this one.",
         [&desk] {
             SculptNode& node = desk.work.node;
             node.Set("symmetry", node.Int("symmetry") == 1 ? 4 : 1);
         },
         [&desk] { return desk.work.node.Int("symmetry") == 1; }, ""});
    for (const auto& [what, id, name, key, tip] :
         {std::tuple{0, "geometry", "Sculpt geometry", "G", "Brushes move the surface."},
          {1, "colour", "Paint colour", "C", "Brushes paint vertex colours."},
          {2, "stencil", "Paint stencil", "K", "Brushes paint what other brushes leave alone."}})
        Add({id, "Brushes", name, key, tip, [&desk, what = what] { Affect(desk, what); },
             [&desk, what = what] { return desk.work.node.affects() == what; }, ""});
}

void Actions::AddHelp(Desk& desk) {
    const auto show = [&desk](Desk::Dialog dialog) {
        return [&desk, dialog] { desk.dialog = dialog; };
    };
    Add({"firstSteps",
         "Help",
         "First steps",
         "",
         "How to sculpt, on one card.",
         show(Desk::Dialog::FirstSteps),
         {},
         ""});
    Add({"keys", "Help", "Keys", "?", "All keys.", show(Desk::Dialog::Keys), {}, "Shift+?"});
    Add({"log",
         "Help",
         "Messages",
         "",
         "What was told since the start.",
         show(Desk::Dialog::Log),
         {},
         ""});
    Add({"about",
         "Help",
         "About this machine",
         "",
         "The program, the display and what draws.",
         [&desk] {
             desk.about = "Kelmo " + RunScript("Kelmo -q -version", false).AsString() + "\n" +
                          RunScript("KelmoDiag -gl", false).AsString();
             desk.dialog = Desk::Dialog::About;
         },
         {},
         ""});
}

}  // namespace kelmo
