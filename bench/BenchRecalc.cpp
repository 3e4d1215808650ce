#include <benchmark/benchmark.h>

#include <chrono>
#include <vector>

#include "bench/BenchScene.h"
#include "core/display/LDisplayCache.h"

// Positions and normals of what has changed, without the marking.

namespace VantrelSDK::bench {
namespace {

/// Arguments: triangles, vertices that have changed, workers.
void BM_Recalculate(benchmark::State& state) {
    LHeadlessNode& node = OpenScene(state.range(0), static_cast<int>(state.range(2)));
    LDisplayCache& display = *node.ldisplayCache();
    const float reach = RadiusFor(static_cast<int>(state.range(1)));
    std::vector<int> changed;
    for (int v = 0; v < display.GetNumVerts(); ++v)
        if (LPoint2(display.GetVertex(v).x, display.GetVertex(v).y).Len() <= reach)
            changed.push_back(v);
    for (auto _ : state) {
        display.Clear(false);
        display.SetVertsMoved(changed);
        // In a step the brush has just been at work on the same workers.
        node.lthGrp()->ForSlices(1 << 16, 1 << 12, [](int first, int last, int) {
            for (int i = first; i < last; ++i) benchmark::DoNotOptimize(i);
        });
        const auto start = std::chrono::steady_clock::now();
        display.CalcChanged(true);
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["vertices"] = static_cast<double>(changed.size());
}

BENCHMARK(BM_Recalculate)
    ->ArgsProduct({{600000, 6000000}, {1000, 10000, 100000}, {1, 2}})
    ->ArgNames({"triangles", "vertices", "workers"})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace VantrelSDK::bench
