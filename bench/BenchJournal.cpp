#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "bench/BenchScene.h"
#include "bench/Timed.h"
#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokeRecorder.h"

// What a stroke costs more when it is kept on disk. The counters are medians; a press that comes
// at once waits for the stroke before, one that comes as a hand does, half a second later, does
// not.

namespace VantrelSDK::bench {
namespace {

/// Arguments: a journal is kept, triangles, milliseconds between strokes.
void BM_KeptStroke(benchmark::State& state) {
    LHeadlessNode& node = OpenScene(state.range(1), 1);
    const PolyMesh none;
    HeadlessTarget target(node, none);
    const std::string path = std::filesystem::temp_directory_path() /
                             ("kelmo-journal-bench-" + std::to_string(getpid()));
    StrokeJournal journal;
    std::string error;
    std::unique_ptr<StrokeRecorder> recorder;
    if (state.range(0)) {
        if (!journal.Open(path, StrokeLogHeader, error)) return state.SkipWithError(error.c_str());
        recorder = std::make_unique<StrokeRecorder>(target, journal);
    }
    const float radius = RadiusFor(2'000);
    node.settings().sculptMode = 8;
    node.settings().paintPressMult.Set(8, 0.001f);
    std::vector<double> press, step, release;
    for (auto _ : state) {
        Timed(press, [&] {
            node.InitTransform({}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 0}, radius, 8, false);
        });
        for (int i = 1; i <= 8; ++i)
            Timed(step, [&] {
                node.Transform({radius * 0.2f * i, radius * 0.02f * i, 0}, {0.002f * i, 0},
                               {0, 0, 1});
            });
        Timed(release, [&] { node.FinishTransform(true); });
        node.UndoStroke();
        std::this_thread::sleep_for(std::chrono::milliseconds(state.range(2)));
    }
    recorder.reset();
    journal.Close(error);
    std::filesystem::remove(path);
    state.SetLabel(state.range(0) ? "journal" : "none");
    state.counters["press_us"] = Median(press);
    state.counters["step_us"] = Median(step);
    state.counters["release_us"] = Median(release);
}
BENCHMARK(BM_KeptStroke)
    ->ArgsProduct({{0, 1}, {60'000, 600'000}, {0, 50}})
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(60);

}  // namespace
}  // namespace VantrelSDK::bench
