#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "bench/BenchScene.h"
#include "bench/Floor.h"
#include "bench/MemoryWatch.h"
#include "bench/Timed.h"
#include "core/sculpt/BrushMode.h"

// Strokes of every mode: press, step, release and undo apart, at sizes 10x apart. The counters are
// medians; "floors" is a step against the least that a step must do for as many vertices, timed
// between the same strokes.

namespace VantrelSDK::bench {
namespace {

/// Drives other data through all caches, as whatever the artist does between two strokes would.
void ChillCaches() {
    static std::vector<char> junk(std::max(64L << 20, sysconf(_SC_LEVEL3_CACHE_SIZE) * 5 / 4));
    for (size_t i = 0; i < junk.size(); i += 64) ++junk[i];
}

struct StrokeTimes {
    std::vector<double> press, first, step, release, undo;
    double verts = 0;
};

/// One stroke of eight steps (two when cold), a fifth of a radius each, from a place; microseconds
/// into `times`. The first step has no direction yet and searches in another way; a cold one waits
/// for memory most.
void TimeStroke(LHeadlessNode& node, int mode, const LPoint3& from, float radius, bool cold,
                StrokeTimes& times) {
    node.settings().sculptMode = mode;
    if (cold) ChillCaches();
    Timed(times.press, [&] {
        node.InitTransform(from, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 0}, radius, mode, false);
    });
    LPoint3 p = from;
    for (int i = 0; i < 8; ++i) {
        p += LPoint3(radius * 0.2f, radius * 0.02f * i, 0);
        Timed(i == 0 ? times.first : times.step, [&] {
            node.Transform(p, {0.002f * (i + 1), 0}, {0, 0, 1});
        });
        times.verts = node.hits().verts.size();
        if (cold && i == 1) break;
    }
    Timed(times.release, [&] { node.FinishTransform(true); });
    Timed(times.undo, [&] { node.UndoStroke(); });
}

/// Arguments: mode, triangles, vertices under the brush, workers, cold.
void BM_Stroke(benchmark::State& state) {
    const int mode = static_cast<int>(state.range(0)), verts = static_cast<int>(state.range(2));
    LHeadlessNode& node = OpenScene(state.range(1), static_cast<int>(state.range(3)));
    const float radius = RadiusFor(verts);
    const bool cold = state.range(4) != 0;
    const float half = std::sqrt(state.range(1) / 2.0f) * 0.5f - 3 * radius;
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-half, half);
    node.settings().paintPressMult.Set(mode, 0.001f);
    StrokeTimes times;
    FloorTimer floor(verts);
    std::vector<double> floors;
    LPoint3 from;
    for (auto _ : state) {
        if (cold) from = {place(random), place(random), 0};
        TimeStroke(node, mode, from, radius, cold, times);
        for (int i = 0; i < 2; ++i) floors.push_back(floor.Time());
    }
    state.SetLabel(FindBrushMode(mode)->name);
    const double step = Median(times.step);
    state.counters["press_us"] = Median(times.press);
    state.counters["first_us"] = Median(times.first);
    state.counters["step_us"] = step;
    state.counters["release_us"] = Median(times.release);
    state.counters["undo_us"] = Median(times.undo);
    state.counters["verts"] = times.verts;
    state.counters["ns_vert"] = step * 1000 / verts;
    const double least = Median(floors);
    state.counters["floor_us"] = least;
    state.counters["floors"] = step / least;
}

template <int Cold>
void AllModes(benchmark::internal::Benchmark* bench) {
    for (const int triangles : {60'000, 600'000, 6'000'000})
        for (int mode = 0; mode <= 19; ++mode)
            for (const int verts : {2'000, 10'000})
                if (mode != 18 && (verts == 2'000 || triangles > 60'000))
                    bench->Args({mode, triangles, verts, 1, Cold});
}
BENCHMARK(BM_Stroke)->Apply(AllModes<0>)->Unit(benchmark::kMicrosecond)->Iterations(30);
BENCHMARK(BM_Stroke)->Apply(AllModes<1>)->Unit(benchmark::kMicrosecond)->Iterations(8);

/// Brush Pull with 10 thousand vertices under the brush, one worker and two.
BENCHMARK(BM_Stroke)
    ->Name("BM_Workers")
    ->Args({8, 600'000, 10'000, 1, 0})
    ->Args({8, 600'000, 10'000, 2, 0})
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(200);

/// The parts of a Brush Pull step, each repeated alone after the step: the search, which weighs
/// too; the marks in the display cache; and what they make it evaluate, mostly normals. What is
/// left of a step moves the vertices and keeps their former values. Arguments: triangles, vertices.
void BM_StepParts(benchmark::State& state) {
    constexpr int kMode = 8;
    LHeadlessNode& node = OpenScene(state.range(0), 1);
    const float radius = RadiusFor(static_cast<int>(state.range(1)));
    node.settings().paintPressMult.Set(kMode, 0.001f);
    node.settings().sculptMode = kMode;
    LDisplayCache& display = *node.ldisplayCache();
    std::vector<double> step, search, marks, normals;
    for (auto _ : state) {
        node.InitTransform({}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 0}, radius, kMode, false);
        for (int i = 1; i <= 4; ++i) {
            std::vector<double> first;
            Timed(i == 1 ? first : step, [&] {
                node.Transform({radius * 0.2f * i, 0, 0}, {0.002f * i, 0}, {0, 0, 1});
            });
        }
        LOctTree::Sweep sweep;
        sweep.p0 = node.ltrans(1), sweep.p1 = node.ltrans(2), sweep.prev = node.ltrans(3);
        sweep.radius = radius;
        sweep.falloff = node.PaintCurve();
        TreeHits& hits = node.hits();
        Timed(search, [&] {
            hits.Clear();
            node.findFaces(sweep, hits);
        });
        Timed(marks, [&] {
            display.Clear(false);
            display.SetChanged(hits.faces, hits.verts, hits.border);
        });
        Timed(normals, [&] { display.CalcChanged(true); });
        node.FinishTransform(true);
        node.UndoStroke();
    }
    state.counters["step_us"] = Median(step);
    state.counters["search_us"] = Median(search);
    state.counters["marks_us"] = Median(marks);
    state.counters["normals_us"] = Median(normals);
}
BENCHMARK(BM_StepParts)->Args({600'000, 10'000})->Unit(benchmark::kMicrosecond)->Iterations(200);

/// Opening a session; the counters tell the bytes a triangle that stay with it, and the most that
/// there are on the way, both without the file's mesh.
void BM_OpenSession(benchmark::State& state) {
    const PolyMesh mesh = Hills(state.range(0));
    const double triangles = mesh.NumPolygons();
    std::string error;
    for (auto _ : state) {
        state.PauseTiming();
        MemoryWatch memory;
        auto node = std::make_unique<LHeadlessNode>(1);
        state.ResumeTiming();
        node->Load(mesh, error);
        node->InitSculpt();
        state.PauseTiming();
        state.counters["peak_bytes_triangle"] = memory.Peak() / triangles;
        state.counters["bytes_triangle"] = memory.Held() / triangles;
        node.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenSession)
    ->Arg(60'000)
    ->Arg(600'000)
    ->Arg(6'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace
}  // namespace VantrelSDK::bench

BENCHMARK_MAIN();
