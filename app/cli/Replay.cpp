#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>

#include <nlohmann/json.hpp>

#include "app/cli/Commands.h"
#include "core/io/AtomicFile.h"
#include "core/io/MeshFile.h"
#include "core/io/ObjWriter.h"
#include "core/io/SystemMemory.h"
#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokePlayer.h"

namespace kelmo {

namespace {

using namespace VantrelSDK;
using Clock = std::chrono::steady_clock;

/// How long operations took, by their names.
class Timings {
  public:
    void Add(std::string_view op, Clock::duration time) {
        times_[std::string(op)].push_back(std::chrono::duration<double, std::milli>(time).count());
    }

    std::string AsJson(long long touched) {
        nlohmann::ordered_json json;
        for (const char* op : {"press", "move", "release", "undo", "level", "subdivide"}) {
            std::vector<double>& times = times_[op];
            std::sort(times.begin(), times.end());
            json["operations"][op] = {{"count", times.size()},
                                      {"median_ms", Quantile(times, 0.5)},
                                      {"p95_ms", Quantile(times, 0.95)},
                                      {"max_ms", Quantile(times, 1)}};
        }
        json["vertices_touched"] = touched;
        json["peak_memory_mb"] = static_cast<double>(PeakMemory()) / (1 << 20);
        return json.dump(2) + "\n";
    }

  private:
    static double Quantile(const std::vector<double>& sorted, double q) {
        return sorted.empty() ? 0 : sorted[static_cast<size_t>(q * (sorted.size() - 1) + 0.5)];
    }

    std::map<std::string, std::vector<double>> times_;
};

/// Plays a whole log. False, with where and what, when something is wrong with it.
bool PlayLog(const std::string& log, StrokePlayer& player, Timings& timings, FileError& error) {
    StrokeLogReader reader;
    if (!reader.Open(log, error)) return false;
    const auto progress = MakeProgress("playing");
    progress->Show();
    std::error_code unknown;
    const auto size = static_cast<double>(std::filesystem::file_size(log, unknown));

    StrokeOp op;
    for (;;) {
        const StrokeLogReader::Result result = reader.Next(op, error);
        if (result == StrokeLogReader::Result::Failed) return false;
        if (result == StrokeLogReader::Result::End) return true;
        // Opening the session is not the first press's time.
        if (std::holds_alternative<PressOp>(op) && !player.OpenSession(error.message))
            return error.file = log, false;
        const auto start = Clock::now();
        if (!player.Play(op, error.message)) {
            error.file = log;
            error.line = reader.Line();
            return false;
        }
        timings.Add(OpName(op), Clock::now() - start);
        if (!unknown) progress->SetProgress(static_cast<float>(reader.BytesRead() / size));
        if (IsInterrupted()) {
            error = {log, reader.Line(), "stopped"};
            return false;
        }
    }
}

/// False, with the reason, when the state isn't that of a node of this mesh.
bool LoadState(LHeadlessNode& node, const std::string& path, const PolyMesh& mesh,
               std::string& error) {
    const LMesh base = *node.lobject()->GetOrigGeom()->GetLevelCopy(0);
    if (!node.LoadState(path, error)) return false;
    const LMesh loaded = *node.lobject()->GetOrigGeom()->GetLevelCopy(0);
    const bool same = std::equal(
        base.Faces().begin(), base.Faces().end(), loaded.Faces().begin(), loaded.Faces().end(),
        [](const LFace& a, const LFace& b) { return std::equal(a.v, a.v + 3, b.v); });
    if (same && loaded.GetNumVerts() == static_cast<int>(mesh.positions.size())) return true;
    error = fmt::format(
        "{}: this is the state of another mesh, of {} vertices and {} triangles; "
        "--mesh has {} and {}",
        path, loaded.GetNumVerts(), loaded.GetNumFaces(), base.GetNumVerts(), base.GetNumFaces());
    return false;
}

/// The host that draws reads OBJ, whatever format the result is written in.
bool Draw(const PolyMesh& mesh, const LNodeSettings& settings, const PictureFile& picture,
          std::string& error) {
    std::error_code unknown;
    const auto path = std::filesystem::temp_directory_path(unknown) /
                      fmt::format("kelmo-{}.obj", static_cast<int>(getpid()));
    const bool drawn = WriteObj(path, mesh, error) && DrawPicture(path, settings, picture, error);
    std::filesystem::remove(path, unknown);
    return drawn;
}

bool WriteText(const std::string& path, const std::string& text, std::string& error) {
    AtomicFile file;
    return file.Open(path, error) && file.Write(text, error) && file.Commit(error);
}

}  // namespace

int RunReplay(const ReplayOptions& options) {
    PolyMesh mesh;
    FileError error;
    if (!ReadMesh(options.mesh, mesh, error, MakeProgress("reading").get()))
        return Fail(error.Text());
    Timings timings;
    long long touched = 0;
    std::string message;
    PolyMesh result;
    LNodeSettings settings;
    for (int i = 0; i < options.repeat; ++i) {
        LHeadlessNode node(options.threads, [] { return MakeProgress("opening"); });
        if (!node.Load(mesh, message)) return Fail(options.mesh + ": " + message);
        if (!options.load.empty() && !LoadState(node, options.load, mesh, message))
            return Fail(message);
        HeadlessTarget target(node, mesh);
        StrokePlayer player(target);
        if (!PlayLog(options.log, player, timings, error)) return Fail(error.Text());
        touched += player.VerticesTouched();
        if (i + 1 < options.repeat) continue;
        const LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
        const int level = options.level < 0 ? geom.GetActiveLevel() : options.level;
        if (level >= geom.GetNumSubivLevels())
            return Fail(fmt::format("--level {}: the mesh has levels 0 to {} at the end of {}",
                                    level, geom.GetNumSubivLevels() - 1, options.log));
        if (!node.GetResult(mesh, level, result, message)) return Fail(message);
        settings = node.settings();
        if (!options.save.empty() && !node.SaveState(options.save, message)) return Fail(message);
    }
    if (!WriteMesh(options.out, result, message)) return Fail(message);
    if (!options.stats.empty() && !WriteText(options.stats, timings.AsJson(touched), message))
        return Fail(message);
    if (!options.picture.path.empty() && !Draw(result, settings, options.picture, message))
        return Fail(message);
    return 0;
}

int RunSample() {
    const std::string folder = "kelmo-out";
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (failed) return Fail(folder + ": can't make the folder: " + failed.message());
    ReplayOptions options;
    options.mesh = KELMO_EXAMPLES "/head.obj";
    options.log = KELMO_EXAMPLES "/face.jsonl";
    options.out = folder + "/face.obj";
    options.stats = folder + "/face-timings.json";
    if (const int failure = RunReplay(options)) return failure;
    fmt::print(
        "Played {} on {}.\n"
        "The sculpted head is {}, the timings are {}.\n",
        options.log, options.mesh, options.out, options.stats);
    LNodeSettings shown;
    shown.displayMode = 2;
    shown.useShadow = SettingArray<bool, 3>(true);
    PictureFile picture;
    picture.path = folder + "/face.png";
    std::string why;
    if (DrawPicture(options.out, shown, picture, why))
        fmt::print("Look at {}.\n", picture.path);
    else
        fmt::print(
            "It can't be drawn here ({}); look at it in the program of your choice, or\n"
            "  tools/picture.py {} {} --compare {}\n",
            why, options.mesh, picture.path, options.out);
    return 0;
}

}  // namespace kelmo
