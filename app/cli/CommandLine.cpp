#include <CLI/CLI.hpp>

#include <charconv>

#include "app/cli/Commands.h"
#include "app/window/KelmoWindow.h"

namespace kelmo {

namespace {

/// Whether a text is a size, such as "960x720".
bool ReadSize(const std::string& text, PictureFile& picture) {
    const auto whole = [&text](size_t first, size_t last, int& number) {
        const char* end = text.data() + last;
        return std::from_chars(text.data() + first, end, number) ==
                   std::from_chars_result{end, {}} &&
               number >= 1;
    };
    const size_t cross = text.find('x');
    return cross != text.npos && whole(0, cross, picture.width) &&
           whole(cross + 1, text.size(), picture.height);
}

std::string IsSize(const std::string& text) {
    PictureFile any;
    return ReadSize(text, any) ? "" : text + " is no size, such as 960x720";
}

CLI::App* AddRun(CLI::App& app, RunOptions& run) {
    CLI::App* command = app.add_subcommand("run", "Run host commands, headless.");
    CLI::Option* script =
        command->add_option("SCRIPT", run.script, "a file of commands, '-' for standard input");
    command->add_option("-c,--commands", run.commands, "the commands themselves")
        ->excludes(script)
        ->allow_extra_args(false);
    command->add_flag("--results", run.results,
                      "print the result of each top-level statement on a line of its own");
    command->add_flag("--interactive", run.interactive,
                      "then ask for commands, with a history and completion of names");
    command->add_flag("--no-module", run.noModule,
                      "the host alone, without the module that lies beside the program");
    command->footer(
        "The language and the commands: docs/scripts.md; in a script, help \"NAME\" tells how a\n"
        "command is called. A result that is an array is printed with blanks between; what has no\n"
        "result prints nothing. The first statement that fails ends the script: the exit code is\n"
        "1, and file, line and column are on standard error. Ctrl-C stops a script the same way.");
    return command;
}

CLI::App* AddRecover(CLI::App& app, RecoverOptions& recover) {
    CLI::App* command =
        app.add_subcommand("recover", "Get back what was done before a crash, headless.");
    command->add_option("SESSION", recover.session,
                        "which one, as it is listed (default: the only one)");
    command->add_option("--out", recover.out, "the scene (.mhs, .mhb) or mesh (.obj) to write");
    command->add_flag("--forget", recover.forget,
                      "take it away, when it has been written where --out is given");
    command->footer(
        "Without options it lists what was left: sessions of windows that ended without being\n"
        "closed, with their strokes, each of which is on disk before the next begins. The window\n"
        "offers them too when it starts. They are in $XDG_STATE_HOME/kelmo/sessions, or in\n"
        "~/.local/state/kelmo/sessions. A scene has everything; a mesh has the shape as it is at\n"
        "the level that was worked on.");
    return command;
}

void AddWindow(CLI::App& app, WindowOptions& window) {
    app.add_option("FILE", window.file, "a scene (.mhb, .mhs) or a mesh (.obj, .ply) to sculpt")
        ->check(CLI::ExistingFile);
    app.add_option("--timings", window.timings,
                   "write what frames took in the session to this file, as JSON");
}

CLI::App* AddRecord(CLI::App& app, WindowOptions& record) {
    CLI::App* command =
        app.add_subcommand("record", "Sculpt in the window, and keep the strokes as a log.");
    command->add_option("FILE", record.file, "the mesh (.obj, .ply) to sculpt")->required();
    command->add_option("--log", record.record, "the stroke log to write at the end")->required();
    command->footer(
        "kelmo replay LOG --mesh FILE plays the log back to the same bits. Of a file with several\n"
        "meshes each has a log: LOG.jsonl, LOG.2.jsonl and so on. What strokes can't tell, such "
        "as\n"
        "another mesh brought in, begins the log anew, which is told.");
    return command;
}

}  // namespace

int Main(int argc, const char* const* argv) {
    CLI::App app{"Kelmo sculpts polygon meshes."};
    app.name("kelmo");
    app.footer(
        "With a mesh or a scene, or with nothing, kelmo opens its window; without a display and a "
        "file\nit plays the sample strokes into kelmo-out/. To open a file that is "
        "named\nas a subcommand is, write ./NAME.\n"
        "Exit codes: 0 done, 1 failed (what, where and what to do is on standard error), 2 wrong "
        "usage.");
    app.require_subcommand(0, 1);

    WindowOptions window;
    AddWindow(app, window);

    InfoOptions info;
    CLI::App* infoCommand =
        app.add_subcommand("info", "Tell what is in a mesh or in a saved node.");
    infoCommand->add_option("FILE", info.file, "an OBJ or PLY file, or the state of a node")
        ->required();
    infoCommand->add_flag("--json", info.json, "print JSON");
    infoCommand->footer(
        "Prints vertices, polygons by their number of corners, triangles, UV sets, bounds, open "
        "and\n"
        "non-manifold edges, levels and targets; of a node its levels, offsets and targets.");

    ReplayOptions replay;
    CLI::App* replayCommand =
        app.add_subcommand("replay", "Play a stroke log on a mesh and write the sculpted mesh.");
    replayCommand->add_option("LOG", replay.log, "a stroke log (JSON Lines, see docs/formats.md)")
        ->required();
    replayCommand->add_option("--mesh", replay.mesh, "the OBJ or PLY file to sculpt")->required();
    replayCommand->add_option("--out", replay.out, "the OBJ or PLY file to write")->required();
    replayCommand
        ->add_option("--level", replay.level,
                     "the subdivision level to write (default: the one active at the end)")
        ->check(CLI::NonNegativeNumber);
    replayCommand->add_option("--threads", replay.threads, "workers (default: one per processor)")
        ->check(CLI::Range(1, 256));
    replayCommand->add_option("--stats", replay.stats, "write timings to this file, as JSON");
    replayCommand->add_option("--repeat", replay.repeat, "play the log so many times, for timings")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
    replayCommand->add_option("--load", replay.load,
                              "begin with the state in this file; IN is what it was made from");
    replayCommand->add_option("--save", replay.save, "write the state at the end to this file");
    replayCommand->add_option("--picture", replay.picture.path,
                              "draw OUT into this image file, as it is shown while it is sculpted");
    std::string size = "960x720";
    replayCommand->add_option("--size", size, "the picture's size in pixels")
        ->type_name("WxH")
        ->check(IsSize)
        ->capture_default_str();
    replayCommand
        ->add_option("--view", replay.picture.view, "from where: persp, front, side or top")
        ->check(CLI::IsMember({"persp", "front", "side", "top"}))
        ->capture_default_str();
    replayCommand->footer(
        "The result is the same, bit for bit, with any number of workers. At level 0 OUT has the\n"
        "polygons of the mesh, above it quads where the level is made of quads, else triangles,\n"
        "with the UVs of that level. OUT is renamed into place when it is complete: a failed run\n"
        "leaves an old file as it was.");

    ShapesOptions shapes;
    CLI::App* shapesCommand =
        app.add_subcommand("shapes", "Sum expression meshes over a neutral one.");
    shapesCommand->add_option("NEUTRAL", shapes.neutral, "the OBJ or PLY file of the neutral")
        ->required();
    shapesCommand
        ->add_option("SHAPE", shapes.shapes,
                     "OBJ or PLY files with the vertices of the neutral, in the same order")
        ->required();
    shapesCommand->add_option("--out", shapes.out, "the OBJ or PLY file to write")->required();
    shapesCommand
        ->add_option("--weights", shapes.weights,
                     "one number a shape, with commas between (default: all 1)")
        ->delimiter(',')
        ->allow_extra_args(false);
    std::string space = "object";
    shapesCommand
        ->add_option("--space", space,
                     "what the shapes are held in: object, or tangent, the frames of the surface")
        ->check(CLI::IsMember({"object", "tangent"}))
        ->capture_default_str();
    shapesCommand->add_option(
        "--on", shapes.on,
        "an OBJ or PLY file to put the shapes on, with the vertices of the neutral "
        "(default: the neutral)");
    shapesCommand->add_option("--level", shapes.level, "the level of quads to sum at and to write")
        ->check(CLI::Range(0, 16))
        ->capture_default_str();
    shapesCommand->add_option("--threads", shapes.threads, "workers (default: one per processor)")
        ->check(CLI::Range(1, 256));
    shapesCommand->footer(
        "OUT is the neutral plus, for each shape, its weight times what it differs from the\n"
        "neutral by. In tangent space, which takes UVs, the shapes turn with the surface that "
        "they\n"
        "are put on: with a head that is posed otherwise. On a level above 0 the surface is\n"
        "smoothed as levels are and the shapes are interpolated. OUT has the polygons of the "
        "neutral, above level 0 "
        "quads.\n"
        "Options with one value, such as --out, end the list of shapes.");

    RunOptions run;
    CLI::App* runCommand = AddRun(app, run);
    RecoverOptions recover;
    CLI::App* recoverCommand = AddRecover(app, recover);
    WindowOptions record;
    CLI::App* recordCommand = AddRecord(app, record);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    shapes.tangent = space == "tangent";
    StopOnInterrupt();
    if (infoCommand->parsed()) return RunInfo(info);
    if (replayCommand->parsed()) {
        ReadSize(size, replay.picture);
        return RunReplay(replay);
    }
    if (recoverCommand->parsed()) return RunRecover(recover);
    if (recordCommand->parsed()) return RunWindow(record);
    if (runCommand->parsed()) {
        if (!run.script.empty() || run.commands || run.interactive) return RunScript(run);
        Fail("run: name a script, '-' for standard input, -c \"commands\", or --interactive");
        return 2;
    }
    if (shapesCommand->parsed()) {
        if (shapes.weights.empty() || shapes.weights.size() == shapes.shapes.size())
            return RunShapes(shapes);
        Fail("--weights has " + std::to_string(shapes.weights.size()) + " numbers for " +
             std::to_string(shapes.shapes.size()) + " shapes; give one for each");
        return 2;
    }
    if (window.file.empty() && !HasDisplay()) return RunSample();
    return RunWindow(window);
}

}  // namespace kelmo
