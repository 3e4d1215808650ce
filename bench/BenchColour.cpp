#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "bench/BenchScene.h"
#include "bench/Timed.h"
#include "core/sculpt/BrushMode.h"

// Strokes on vertex colours and stencils: press, step, release and undo apart, at sizes 10x apart;
// the step of the same brush on geometry beside them. The counters are medians.

namespace VantrelSDK::bench {
namespace {

enum Affect { kGeometry, kColour, kStencil };

/// Arguments: mode, what is affected, triangles, vertices under the brush.
void BM_ColourStroke(benchmark::State& state) {
    const int mode = static_cast<int>(state.range(0)), affect = static_cast<int>(state.range(1));
    const int verts = static_cast<int>(state.range(3));
    LHeadlessNode& node = OpenScene(state.range(2), 1);
    const float radius = RadiusFor(verts);
    LNodeSettings& settings = node.settings();
    settings.sculptMode = mode;
    settings.affectGeometry = affect == kGeometry;
    settings.affectVertColor = affect == kColour;
    settings.affectStencil = affect == kStencil;
    settings.paintPressMult.Set(mode, 0.001f);
    std::vector<double> press, step, release, undo;
    for (auto _ : state) {
        Timed(press, [&] {
            node.InitTransform({}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 0}, radius, mode, false);
        });
        for (int i = 1; i <= 8; ++i) {
            std::vector<double> first;
            Timed(i == 1 ? first : step, [&] {
                node.Transform({radius * 0.2f * i, radius * 0.02f * i, 0}, {0.002f * i, 0},
                               {0, 0, 1});
            });
        }
        Timed(release, [&] { node.FinishTransform(true); });
        Timed(undo, [&] { node.UndoStroke(); });
    }
    settings.affectGeometry = true;
    settings.affectVertColor = settings.affectStencil = false;
    const char* names[] = {" geometry", " colour", " stencil"};
    state.SetLabel(FindBrushMode(mode)->name + std::string(names[affect]));
    const double middle = Median(step);
    state.counters["press_us"] = Median(press);
    state.counters["step_us"] = middle;
    state.counters["release_us"] = Median(release);
    state.counters["undo_us"] = Median(undo);
    state.counters["ns_vert"] = middle * 1000 / verts;
}
void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int mode : {8, 12})
        for (const int affect : {kGeometry, kColour, kStencil})
            for (const int triangles : {60'000, 600'000})
                bench->Args({mode, affect, triangles, 2'000});
}
BENCHMARK(BM_ColourStroke)->Apply(Sizes)->Unit(benchmark::kMicrosecond)->Iterations(60);

/// Going up to level 2 after a stroke on level 0. Arguments: triangles of level 0.
void BM_ColoursComeUp(benchmark::State& state) {
    LHeadlessNode node(1);
    std::string error;
    node.Load(Hills(state.range(0)), error);
    node.SubdivideAll_Quad();
    node.SubdivideAll_Quad();
    LColorDelta& colours = *node.lcolorDelta();
    for (auto _ : state) {
        state.PauseTiming();
        colours.SetActiveSubdivLevel(0);
        for (int v = 0; v < 2000; ++v) colours.MixColor(v, 0.5f, LColor::cWhite);
        state.ResumeTiming();
        colours.SetActiveSubdivLevel(2);
    }
}
BENCHMARK(BM_ColoursComeUp)->Arg(6'000)->Arg(60'000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
}  // namespace VantrelSDK::bench
